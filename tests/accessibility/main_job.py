#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
"""The main job and a search, done from outside by names, roles and actions alone: a CV is opened, checked, corrected and
stored, looked at in the list, and candidates are looked for by what they can do.

    private_desktop.py main_job.py FOLDER_OF_PROGRAMS CV
"""

import contextlib
import json
import os
import re
import subprocess
import sys
import urllib.request

import screen_reader as reader
from screen_reader import act, choose_row, find, gone, press, reads, switch, wait_until, write

READ_NAME = "Javier Montes Aguirre"
PROFESSION = "Contable sénior"
CORRECTED_NAME = "Javier Montes De La Torre"


def step(text):
    print("-", text, flush=True)


@contextlib.contextmanager
def server(programs, name, *options):
    """A server on a free port, and the address that it prints when it is ready."""
    process = subprocess.Popen([os.path.join(programs, name), "--listen", "127.0.0.1:0", *options],
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    try:
        for line in process.stdout:
            if address := re.search(r"http://127\.0\.0\.1:[1-9][0-9]*", line):
                yield address.group()
                return
        raise AssertionError(f"{name} does not start")
    finally:
        process.terminate()
        process.wait()


def choose_models(address):
    folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "Dorvantel")
    os.makedirs(folder)
    with open(os.path.join(folder, "Dorvantel.conf"), "w", encoding="utf-8") as settings:
        settings.write(f"[General]\nollamaURL={address}\nselectedLLMModel=demo-texto:latest\n"
                       "selectedEmbeddingModel=demo-vectores:latest\n")


@contextlib.contextmanager
def running(program, *arguments):
    env = os.environ | {"QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
    process = subprocess.Popen([program, *arguments], env=env)
    try:
        yield reader.program("Dorvantel")
    finally:
        process.terminate()
        process.wait()


def candidate(name, profession=""):
    """The row of a candidate is read out as the name and the profession."""
    def fits(row):
        return row.startswith(name + ", " + profession)
    fits.__doc__ = f"of the candidate «{name}»"
    return fits


def open_cv(window, cv):
    step("open a CV from the menu")
    act(window, "menu item", "Archivo", "ShowMenu")
    press(find(window, "menu item", "Archivo"), "Añadir currículum…", role="menu item")
    dialog = find(window, "dialog", "Añadir currículum")
    write(dialog, "Nombre de fichero:", cv)
    press(dialog, "Abrir")


def check_and_correct(window):
    step("read what was read of it")
    sheet = find(window, "dialog", "Validación de la información")
    reads(sheet, "Nombre", lambda text: text == READ_NAME)
    reads(sheet, "Profesión", lambda text: text == PROFESSION)

    step("read what was written")
    switch(sheet, "Datos generados", role="radio button")
    reads(sheet, "Resumen", lambda text: text.startswith("Contable con catorce años"))
    reads(sheet, "Correo", lambda text: text.startswith("Estimado Sr. Montes"))

    step("correct the name and store the candidate")
    switch(sheet, "Datos extraídos", role="radio button")
    write(sheet, "Nombre", CORRECTED_NAME)
    reads(sheet, "Nombre", lambda text: text == CORRECTED_NAME)
    press(sheet, "OK")
    gone(window, "dialog", "Validación de la información")


def is_stored(records):
    with urllib.request.urlopen(records) as answer:
        return CORRECTED_NAME in {record["name"] for record in json.load(answer)["response"]}


def look_at_candidate(window):
    step("find the candidate in the list and look at the text")
    rows = find(window, "list", "Candidatos")
    choose_row(rows, candidate(CORRECTED_NAME, PROFESSION))
    switch(window, "Texto", role="radio button")
    reads(window, "Texto", lambda text: "Distribuciones Alarcón Norte" in text)


def search(window):
    step("look for candidates who know Excel")
    rows = find(window, "list", "Candidatos")
    choose_row(rows, "Buscar")
    skills = find(window, "list", "Habilidades técnicas")
    write(skills, "Habilidades técnicas", "Excel,")
    find(skills, "list item", "Excel")
    press(window, "Buscar")
    results = find(window, "list", "Resultados")
    found = find(results, "list item", candidate(CORRECTED_NAME, PROFESSION))
    assert found.get_name() == f"{CORRECTED_NAME}, {PROFESSION}"

    step("open the result")
    switch(found, f"Detalles de {CORRECTED_NAME}", role="check box")
    find(found, "check box", "Excel")

    step("clear the search")
    press(window, "Limpiar")
    gone(window, "list", "Resultados")
    gone(skills, "list item", "Excel")


def main():
    programs, cv = sys.argv[1:]
    with contextlib.ExitStack() as stack:
        models = stack.enter_context(server(programs, "dorvantel-demo-model"))
        store = os.path.join(os.environ["HOME"], "records.sqlite")
        records = stack.enter_context(server(programs, "dorvantel-records", "--store", store, "--model-server", models,
                                             "--embedding-model", "demo-vectores:latest")) + "/curriculums"
        choose_models(models)
        application = stack.enter_context(running(os.path.join(programs, "dorvantel-under-test"), records))
        try:
            window = find(application, "frame", "Dorvantel")
            open_cv(application, cv)
            check_and_correct(application)
            wait_until("the candidate is stored", lambda: is_stored(records))
            look_at_candidate(window)
            search(window)
        except Exception:
            print(reader.tree(application), file=sys.stderr)
            raise


if __name__ == "__main__":
    main()
