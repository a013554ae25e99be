// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/Confinement.h"

#include "platform/Sanitizers.h"
#include "tests/support/FakeReader.h"
#include "tests/support/SamplePDF.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <memory>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

const QString reader = QStringLiteral(DORVANTEL_BIN_DIR "/dorvantel-pdf-reader");

constexpr int done = 0;
constexpr int notConfined = 253;

/// What became of `action` in a process that was confined: `done`, or the error of the system. The action returns as
/// system calls do.
int outcomeOf(const std::function<long()>& action) {
    const pid_t child = fork();
    if (child == 0) {
        if (!confineThisProcess()) {
            _exit(notConfined);
        }
        _exit(action() == -1 ? errno : done);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

class Confinement : public testing::Test {
protected:
    void SetUp() override {
        QFile kept(QString::fromUtf8(path));
        ASSERT_TRUE(kept.open(QIODevice::WriteOnly));
        kept.write("kept");
    }

    QTemporaryDir folder;
    QByteArray path = folder.filePath(u"file"_s).toUtf8();
    QByteArray newPath = folder.filePath(u"new"_s).toUtf8();
    const char* file = path.constData();
    const char* other = newPath.constData();
};

sockaddr_in loopback(quint16 port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

long asAddress(const sockaddr_in& address, const std::function<int(const sockaddr*, socklen_t)>& call) {
    return call(reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

} // namespace

TEST_F(Confinement, WhatIsTriedHereSucceedsWithoutIt) {
    const int descriptor = open(file, O_RDWR);
    EXPECT_GE(descriptor, 0);
    close(descriptor);
    EXPECT_EQ(rename(file, other), 0);
    EXPECT_EQ(unlink(other), 0);
    EXPECT_EQ(mkdir(other, 0700), 0);
    const int socketDescriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_GE(socketDescriptor, 0);
    close(socketDescriptor);
}

TEST_F(Confinement, NoFileIsOpenedForWriting) {
    for (const int flags : {O_WRONLY, O_RDWR, O_WRONLY | O_TRUNC, O_RDONLY | O_TRUNC, O_WRONLY | O_APPEND}) {
        EXPECT_EQ(outcomeOf([&] { return open(file, flags); }), EPERM) << flags;
        EXPECT_EQ(outcomeOf([&] { return syscall(SYS_openat, AT_FDCWD, file, flags); }), EPERM) << flags;
    }
    EXPECT_EQ(test::contentOf(folder.filePath(u"file"_s)), "kept");
}

TEST_F(Confinement, NoFileIsMade) {
    for (const int flags : {O_WRONLY | O_CREAT, O_RDONLY | O_CREAT, O_RDWR | O_CREAT | O_EXCL}) {
        EXPECT_EQ(outcomeOf([&] { return open(other, flags, 0600); }), EPERM) << flags;
    }
    EXPECT_EQ(outcomeOf([&] { return creat(other, 0600); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return open(folder.path().toUtf8().constData(), O_TMPFILE | O_RDWR, 0600); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return mkdir(other, 0700); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return mkfifo(other, 0600); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return link(file, other); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return symlink(file, other); }), EPERM);
    EXPECT_EQ(outcomeOf([] { return memfd_create("memory", 0); }), EPERM);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(), 1);
}

TEST_F(Confinement, NoFileIsChangedOrRemoved) {
    EXPECT_EQ(outcomeOf([&] { return unlink(file); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return rename(file, other); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return truncate(file, 0); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return chmod(file, 0777); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return chown(file, 1, 1); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return utimensat(AT_FDCWD, file, nullptr, 0); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return rmdir(folder.path().toUtf8().constData()); }), EPERM);
    EXPECT_EQ(test::contentOf(folder.filePath(u"file"_s)), "kept");
}

TEST_F(Confinement, NoSocketIsMade) {
    for (const int family : {AF_INET, AF_INET6, AF_UNIX, AF_NETLINK}) {
        for (const int type : {SOCK_STREAM, SOCK_DGRAM}) {
            EXPECT_EQ(outcomeOf([&] { return socket(family, type, 0); }), EPERM) << family << ' ' << type;
        }
    }
    EXPECT_EQ(outcomeOf([] {
                  int pair[2];
                  return socketpair(AF_UNIX, SOCK_STREAM, 0, pair);
              }),
              EPERM);
}

TEST_F(Confinement, ASocketThatWasLeftOpenReachesNobody) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const sockaddr_in address = loopback(server.serverPort());
    const sockaddr_in anyPort = loopback(0);
    const int stream = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int datagram = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const auto connectStream = [&] {
        return asAddress(address, [&](auto* to, socklen_t size) { return connect(stream, to, size); });
    };
    EXPECT_EQ(outcomeOf(connectStream), EPERM);
    EXPECT_EQ(
        outcomeOf([&] { return asAddress(anyPort, [&](auto* to, socklen_t size) { return bind(stream, to, size); }); }),
        EPERM);
    EXPECT_EQ(outcomeOf([&] { return listen(stream, 1); }), EPERM);
    EXPECT_EQ(outcomeOf([&] {
                  return asAddress(address, [&](auto* to, socklen_t size) {
                      return static_cast<int>(sendto(datagram, "x", 1, 0, to, size));
                  });
              }),
              EPERM);
    EXPECT_FALSE(server.waitForNewConnection(0));
    EXPECT_EQ(connectStream(), 0) << "without it, somebody is there";
    close(stream);
    close(datagram);
}

TEST_F(Confinement, NoProgramIsStarted) {
    EXPECT_EQ(outcomeOf([] { return execl("/bin/true", "true", nullptr); }), EPERM);
    const std::array<char*, 1> nothing = {nullptr};
    EXPECT_EQ(
        outcomeOf([&] { return syscall(SYS_execveat, AT_FDCWD, "/bin/true", nothing.data(), nothing.data(), 0); }),
        EPERM);
}

TEST_F(Confinement, NoProcessIsStarted) {
    if (isSanitized) {
        GTEST_SKIP() << "the leak check looks for leaks in a process of its own";
    }
    EXPECT_EQ(outcomeOf([]() -> long {
                  const pid_t child = fork();
                  if (child == 0) {
                      _exit(done);
                  }
                  return child;
              }),
              EPERM);
#if defined(SYS_fork)
    EXPECT_EQ(outcomeOf([]() -> long {
                  const long child = syscall(SYS_fork);
                  if (child == 0) {
                      _exit(done);
                  }
                  return child;
              }),
              EPERM);
#endif
}

TEST_F(Confinement, NoOtherProcessIsTouched) {
    const pid_t parent = getpid();
    EXPECT_EQ(outcomeOf([&] { return kill(parent, 0); }), EPERM);
    EXPECT_EQ(outcomeOf([&] { return syscall(SYS_tgkill, parent, parent, 0); }), EPERM);
    EXPECT_EQ(outcomeOf([&] {
                  rlimit limits{};
                  return prlimit(parent, RLIMIT_CORE, nullptr, &limits);
              }),
              EPERM);
    if (!isSanitized) {
        EXPECT_EQ(outcomeOf([&] { return ptrace(PTRACE_ATTACH, parent, nullptr, nullptr); }), EPERM);
    }
}

TEST_F(Confinement, TheWaysAroundAreClosedToo) {
    struct Call {
        const char* name;
        long number;
    };
    for (const auto& [name, number] : {Call{"io_uring_setup", SYS_io_uring_setup},
                                       {"mount", SYS_mount},
                                       {"unshare", SYS_unshare},
                                       {"bpf", SYS_bpf},
                                       {"process_vm_readv", SYS_process_vm_readv},
                                       {"perf_event_open", SYS_perf_event_open},
                                       {"userfaultfd", SYS_userfaultfd},
                                       {"keyctl", SYS_keyctl},
                                       {"setuid", SYS_setuid},
                                       {"chroot", SYS_chroot},
                                       {"openat2", SYS_openat2},
                                       {"pidfd_open", SYS_pidfd_open},
                                       {"init_module", SYS_init_module}}) {
        EXPECT_EQ(outcomeOf([&, call = number] { return syscall(call, 0, 0, 0, 0, 0, 0); }), EPERM) << name;
    }
}

TEST_F(Confinement, ATerminalThatIsOpenTakesNoInputFromIt) {
    EXPECT_EQ(outcomeOf([] { return ioctl(STDIN_FILENO, TIOCSTI, "x"); }), EPERM);
}

TEST_F(Confinement, FilesOfTheUserAreNotRead) {
    if (!canConfineReading()) {
        GTEST_SKIP() << "the kernel has no Landlock, or this is a build with sanitizers";
    }
    EXPECT_EQ(outcomeOf([&] { return open(file, O_RDONLY); }), EACCES);
    EXPECT_EQ(outcomeOf([&] { return open(folder.path().toUtf8().constData(), O_RDONLY | O_DIRECTORY); }), EACCES);
    EXPECT_EQ(outcomeOf([] { return open("/etc/passwd", O_RDONLY); }), EACCES);
    EXPECT_EQ(outcomeOf([] { return open("/proc/self/environ", O_RDONLY); }), EACCES);
    const QByteArray home = QDir::homePath().toUtf8();
    EXPECT_EQ(outcomeOf([&] { return open(home.constData(), O_RDONLY | O_DIRECTORY); }), EACCES);
}

TEST_F(Confinement, WhereTheFontsAreIsRead) {
    EXPECT_EQ(outcomeOf([] { return open("/usr/share", O_RDONLY | O_DIRECTORY); }), done);
}

TEST_F(Confinement, WhatIsOpenIsReadAndWritten) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(outcomeOf([&] { return write(ends[1], "x", 1); }), done);
    EXPECT_EQ(outcomeOf([&] {
                  char byte = 0;
                  return read(ends[0], &byte, 1) == 1 && byte == 'x' ? 0 : -1;
              }),
              done);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(Confinement, ThreadsAreStarted) {
    if (isSanitizedForThreads) {
        GTEST_SKIP() << "the thread sanitizer knows no threads after a fork";
    }
    EXPECT_EQ(outcomeOf([] {
                  int result = -1;
                  std::thread([&result] { result = 0; }).join();
                  return result;
              }),
              done);
}

TEST_F(Confinement, AbortEndsTheProcess) {
    EXPECT_EQ(outcomeOf([]() -> long {
                  const rlimit none{0, 0};
                  setrlimit(RLIMIT_CORE, &none);
                  std::abort();
              }),
              -SIGABRT);
}

TEST_F(Confinement, WhatCannotBeInstalledIsAnErrorForPeople) {
    // What is confined installs nothing more: no call for that is on the list. With sanitizers the first one is.
    const char* expected = isSanitized ? "the filter of system calls cannot be installed: "
                                       : "further privileges cannot be given up: Operation not permitted";
    EXPECT_EQ(outcomeOf([expected] {
                  const std::expected<void, std::string> again = confineThisProcess();
                  return !again && again.error().starts_with(expected) ? 0 : -1;
              }),
              done);
}

TEST(PDFReader, OpensNothingWhenItCannotBeConfined) {
    const std::unique_ptr<void, decltype(&seccomp_release)> noFilters(seccomp_init(SCMP_ACT_ALLOW), seccomp_release);
    ASSERT_EQ(seccomp_rule_add(noFilters.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(seccomp), 0), 0);
    ASSERT_EQ(seccomp_rule_add(noFilters.get(), SCMP_ACT_ERRNO(EINVAL), SCMP_SYS(prctl), 1,
                               scmp_arg_cmp{0, SCMP_CMP_EQ, PR_SET_SECCOMP, 0}),
              0);
    for (const QStringList& arguments :
         {QStringList(), QStringList{u"--render"_s}, QStringList{u"--text"_s, u"/dev/null"_s}}) {
        QProcess process;
        process.setChildProcessModifier([&] { seccomp_load(noFilters.get()); });
        process.start(reader, arguments);
        process.write(test::textPDF({"Uno"}));
        process.closeWriteChannel();
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 3);
        EXPECT_EQ(process.readAllStandardOutput(), "");
        EXPECT_TRUE(process.readAllStandardError().startsWith(
            "dorvantel-pdf-reader: no PDF is opened, because the filter of system calls cannot be installed: "));
    }
}

TEST(PDFReader, IsConfinedBeforeItReads) {
    for (const QStringList& arguments : {QStringList(), QStringList{u"--render"_s}}) {
        QProcess process;
        process.start(reader, arguments);
        ASSERT_TRUE(process.waitForStarted());
        const QString status = u"/proc/%1/status"_s.arg(process.processId());
        EXPECT_TRUE(test::waitUntil([&] { return test::contentOf(status).contains("\nSeccomp:\t2\n"); }));
        EXPECT_TRUE(test::contentOf(status).contains("\nNoNewPrivs:\t1\n"));
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished());
    }
}

} // namespace dorvantel
