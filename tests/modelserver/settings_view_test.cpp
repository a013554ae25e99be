// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/SettingsView.h"

#include "modelserver/CapabilityBadge.h"
#include "modelserver/OllamaSettingsView.h"
#include "tests/modelserver/ModelSettingsFixture.h"

#include <QLabel>
#include <QLayout>

namespace dorvantel::test {

using SettingsViewTest = ModelSettingsViewTest;

namespace {

QImage picture(const QIcon& icon) {
    return icon.pixmap(32, 32).toImage();
}

/// The texts of a page's labels and buttons from top to bottom, hidden ones as well.
QStringList labelTexts(const QWidget& page) {
    QStringList texts;
    for (const QLabel* label : page.findChildren<QLabel*>()) {
        texts += label->text();
    }
    return texts;
}

QString symbolOf(MarkedRow& row) {
    return row.symbol().name() + u' ' + row.symbol().colour().name();
}

QString named(const QString& symbol, QRgb colour) {
    return symbol + u' ' + QColor(colour).name();
}

QImage onWhite(QWidget& widget) {
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::RenderFlags());
    return image;
}

/// `seen` is white with this share of `colour` over it.
void expectShare(const QColor& seen, const QColor& colour, double share) {
    const auto mixed = [share](int part) { return 255 * (1 - share) + part * share; };
    EXPECT_NEAR(seen.red(), mixed(colour.red()), 2);
    EXPECT_NEAR(seen.green(), mixed(colour.green()), 2);
    EXPECT_NEAR(seen.blue(), mixed(colour.blue()), 2);
}

} // namespace

TEST_F(SettingsViewTest, HasTwoTabsInOrderAndItsSize) {
    const SettingsView tabs(settings, session);
    ASSERT_EQ(tabs.count(), 2);
    EXPECT_EQ(tabs.tabText(0), u"General"_s);
    EXPECT_EQ(tabs.tabText(1), u"Models"_s);
    EXPECT_TRUE(qobject_cast<OllamaSettingsView*>(tabs.widget(0)));
    EXPECT_TRUE(qobject_cast<ModelSettingsView*>(tabs.widget(1)));
    EXPECT_EQ(tabs.size(), QSize(600, 500));
    const QColor colour = tabs.palette().color(QPalette::WindowText);
    EXPECT_EQ(picture(tabs.tabIcon(0)), picture(symbolIcon(u"gear"_s, colour)));
    EXPECT_EQ(picture(tabs.tabIcon(1)), picture(symbolIcon(u"server.rack"_s, colour)));
}

TEST_F(SettingsViewTest, ModelsAreLoadedWhenTheirTabIsOpened) {
    SettingsView tabs(settings, session);
    tabs.show();
    QCoreApplication::processEvents();
    EXPECT_TRUE(server.requests().isEmpty());
    tabs.setCurrentIndex(1);
    EXPECT_TRUE(waitUntil([this] { return server.requests().size() == 5; }));
}

TEST_F(ModelSettingsViewTest, SaysWhatItIsFor) {
    openPage();
    EXPECT_EQ(
        labelTexts(*view),
        (QStringList{u"Loading models..."_s, u"Models loaded"_s, u""_s, u"Embedding Model"_s,
                     u"Select a model that supports embeddings (text to vector conversion)"_s,
                     u"No embedding models available. Please install an embedding model (e.g., nomic-embed-text, "
                     u"mxbai-embed-large)"_s,
                     u"Embedding Model"_s, u"Language Model (LLM)"_s,
                     u"Select a text-only language model (without vision or embedding capabilities)"_s,
                     u"No compatible LLM models available. Please install a text-only model (e.g., llama3.2, mistral, "
                     u"qwen2.5)"_s,
                     u"LLM Model"_s, u"Both models configured"_s, u"Please select both models to use the app"_s}));
    EXPECT_EQ(button(u"refresh"_s).text(), u"Refresh Models"_s);
    EXPECT_EQ(button(u"saveSelection"_s).text(), u"Save Selection"_s);
    EXPECT_EQ(picker(u"embedding"_s).itemText(0), u"Select a model..."_s);
}

TEST_F(ModelSettingsViewTest, RowsHaveTheirSymbolsColoursAndFonts) {
    openPage();
    EXPECT_EQ(symbolOf(row(u"loading"_s)), named(u"arrow.clockwise"_s, colours::blue));
    EXPECT_EQ(symbolOf(row(u"loaded"_s)), named(u"checkmark.circle.fill"_s, colours::green));
    EXPECT_EQ(symbolOf(row(u"modelError"_s)), named(u"exclamationmark.triangle.fill"_s, colours::orange));
    EXPECT_EQ(symbolOf(row(u"configured"_s)), named(u"checkmark.circle.fill"_s, colours::green));
    EXPECT_EQ(symbolOf(row(u"notConfigured"_s)), named(u"exclamationmark.triangle.fill"_s, colours::orange));
    EXPECT_EQ(row(u"loading"_s).label().font(), textFont(TextStyle::Headline));
    EXPECT_EQ(row(u"loaded"_s).label().font(), textFont(TextStyle::Headline));
    EXPECT_EQ(row(u"modelError"_s).label().font(), textFont(TextStyle::Caption));
    EXPECT_EQ(row(u"modelError"_s).label().palette().color(QPalette::WindowText), secondaryTextColour(view->palette()));
    for (const QString& name : {u"embedding"_s, u"language"_s}) {
        auto* none = choice(name).findChild<MarkedRow*>(u"noCandidates"_s);
        EXPECT_EQ(symbolOf(*none), named(u"info.circle"_s, colours::orange));
        EXPECT_EQ(none->label().font(), textFont(TextStyle::Caption));
    }
    EXPECT_EQ(picture(button(u"refresh"_s).icon()),
              picture(symbolIcon(u"arrow.clockwise"_s, view->palette().color(QPalette::ButtonText))));
    EXPECT_TRUE(button(u"saveSelection"_s).isDefault());
}

TEST(MarkedRow, IsLighterOnADarkPalette) {
    QApplication::setPalette(darkPalette());
    MarkedRow row(u"info.circle"_s, colours::orange, textLabel(u"x"_s, TextStyle::Body));
    EXPECT_EQ(row.symbol().colour(), readableColour(colours::orange, darkPalette()));
    EXPECT_NE(row.symbol().colour(), QColor(colours::orange));
    QApplication::setPalette(QPalette());
}

TEST(ModelDetailView, BoxHasItsPaddingAndAPaleGrayRoundedBackground) {
    ModelDetailView view({u"a"_s, {}, {}, ModelDetails{u"gguf"_s, {}, {}}, {}});
    EXPECT_EQ(view.layout()->contentsMargins(), QMargins(8, 8, 8, 8));
    view.resize(200, 60);
    const QImage image = onWhite(view);
    expectShare(image.pixelColor(190, 30), colours::gray, 0.1);
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white)); // outside a corner of radius 6
    expectShare(image.pixelColor(6, 1), colours::gray, 0.1);
}

TEST(ModelDetailView, FontsAreTheSmallOnes) {
    const ModelDetailView view({u"a"_s, {}, {}, ModelDetails{u"gguf"_s, {}, {}}, {}});
    const auto labels = view.findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 3);
    EXPECT_EQ(labels[0]->font(), textFont(TextStyle::Caption2));
    EXPECT_EQ(labels[1]->font(), textFont(TextStyle::Caption2));
    EXPECT_EQ(labels[2]->text(), u"Capabilities:"_s);
    EXPECT_EQ(labels[2]->font(), textFont(TextStyle::Caption));
    EXPECT_EQ(labels[2]->palette().color(QPalette::WindowText), secondaryTextColour(view.palette()));
}

TEST(CapabilityBadge, IsItsWordInItsColourOnAPalerPatch) {
    CapabilityBadge badge(u"Tools"_s, colours::purple);
    EXPECT_EQ(badge.contentsMargins(), QMargins(6, 2, 6, 2));
    EXPECT_EQ(badge.font(), textFont(TextStyle::Caption2));
    EXPECT_EQ(badge.palette().color(QPalette::WindowText), QColor(colours::purple));
    badge.resize(badge.sizeHint());
    const QImage image = onWhite(badge);
    expectShare(image.pixelColor(2, badge.height() / 2), colours::purple, 0.2);
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white)); // outside a corner of radius 4
    expectShare(image.pixelColor(4, 1), colours::purple, 0.2);
}

} // namespace dorvantel::test
