#!/usr/bin/env python3
"""Lists what is open or wrong in the translations, and texts of the sources that miss them.

Usage: check_translations.py [FILE.ts...]. Prints one line for every finding, and ends with 1 if
there is any. `scripts/build release update_translations` takes the texts of the sources in.
"""

import glob
import os
import re
import sys
import xml.etree.ElementTree

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
SOURCES = ("ui", "gui", os.path.join("host", "contract"), os.path.join("host", "widgets"))
TRANSLATING_FUNCTION = re.compile(
    r"QString (\w+)\(const char\* \w+\) \{\s*return QCoreApplication::translate\(")
PLACEHOLDER = re.compile(r"%(?:L?\d+|n)")


def mnemonics(text):
    return [key.lower() for key in re.findall(r"&([^&\s])", text.replace("&&", ""))]


def fault_of(source, translation):
    """What is wrong with a translation; None where nothing is."""
    if translation.get("type") == "unfinished":
        return "not translated"
    forms = [form.text or "" for form in translation.findall("numerusform")] or [translation.text or ""]
    for form in forms:
        if not form:
            return "not translated"
        if set(PLACEHOLDER.findall(source)) - {"%n"} != set(PLACEHOLDER.findall(form)) - {"%n"}:
            return f"other placeholders in '{form}'"
        if len(mnemonics(source)) != len(mnemonics(form)):
            return f"one of both has a mnemonic: '{form}'"
        if source.endswith(":") != form.endswith(":"):
            return f"one of both ends with a colon: '{form}'"
    return None


def shared_mnemonics(context):
    """Keys that two texts of a form share in the translation, but not in the source.

    The texts of a main window and its menus have several owners of keys; its test looks at them.
    """
    if (context.findtext("name") or "").endswith(("Window", "Menus")):
        return
    owners = {}
    for message in context.iter("message"):
        source, form = message.findtext("source") or "", message.findtext("translation") or ""
        for own, key in zip(mnemonics(source), mnemonics(form)):
            for other_source, other_own in owners.setdefault(key, []):
                if own != other_own:
                    yield f"'{source}' and '{other_source}': both have the mnemonic '{key}'"
            owners[key].append((source, own))


def unseen_texts():
    """Texts that lupdate passes over: literals for a function that asks for any text's translation."""
    for folder in SOURCES:
        for path in sorted(glob.glob(os.path.join(ROOT, folder, "**", "*.cpp"), recursive=True)):
            with open(path, encoding="utf-8") as file:
                source = file.read()
            for function in TRANSLATING_FUNCTION.findall(source):
                for text in re.findall(rf'\b{function}\(\s*(".*?")', source):
                    yield f"{os.path.relpath(path, ROOT)}: {text} is not marked by QT_TRANSLATE_NOOP or tr()"


def findings_in(path):
    for context in xml.etree.ElementTree.parse(path).getroot().iter("context"):
        name = context.findtext("name")
        for fault in shared_mnemonics(context):
            yield f"{os.path.basename(path)}: {name}: {fault}"
        for message in context.iter("message"):
            source = message.findtext("source") or ""
            fault = fault_of(source, message.find("translation"))
            if fault:
                yield f"{os.path.basename(path)}: {name}: '{source}': {fault}"


def main():
    paths = sys.argv[1:] or sorted(glob.glob(os.path.join(ROOT, "ui", "translations", "*.ts")))
    findings = [finding for path in paths for finding in findings_in(path)] + list(unseen_texts())
    count = len(findings)
    for finding in findings:
        print(finding)
    if count:
        print(f"{count} findings.", file=sys.stderr)
    return 1 if count or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
