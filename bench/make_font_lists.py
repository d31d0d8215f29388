#!/usr/bin/env python3
"""Makes a folder tree with Adobe font lists, a font name database and outline files, of any size.

    make_font_lists.py FOLDER --records N [--lists K] [--encoding utf-8|mac_roman] [--no-outlines]

FOLDER is what TYPESLATE_ROOT may point at: the files lie in usr/local/share/Adobe. Records have 15 to 21 lines and
some 450 bytes; a third of the names have two records, of which the first, a suitcase's, names no font file of its own;
a tenth have values beyond ASCII. The same arguments give the same files.
"""
import argparse
import pathlib
import random

FAMILIES = ["Adelaide", "Bergen", "Caslon Nord", "Dorset", "Eiger", "Fjord Text", "Galway", "Harbour", "Inverness"]
ACCENTED = ["Café Noir", "Señal", "Bücher Antiqua", "Århus Grotesk", "Façade", "Übersicht", "Zoë Sans"]
STYLES = ["Regular", "Italic", "Bold", "Bold Italic", "Light", "Semibold", "Condensed", "Black Oblique"]
FORMATS = ["POSTResource", "Plain", "sfnt", "PFB"]


def names(number, chance):
    family = f"{chance.choice(ACCENTED if number % 10 == 0 else FAMILIES)} {number // 8}"
    style = STYLES[number % 8]
    ascii_family = family.encode("ascii", "ignore").decode().replace(" ", "")
    return f"{ascii_family}-{style.replace(' ', '')}", family, style


def outline(number):
    return f"Folder {number // 500}\\Font{number:06}.pfb"


def suitcase(number, post_script, family):
    return [("Handler", "DirectoryHandler"), ("FontType", "Suitcase"), ("FontName", post_script),
            ("OutlineFileName", f"Folder {number // 500}\\{family}"), ("ResourceID", 1000 + number),
            ("MacStyle", number % 4), ("FileLength", 20000 + number * 7), ("FileModTime", 1042300000 + number),
            ("VMin", "0x00010000"), ("Category", "screen font"), ("Sizes", "9,10,12,14,18,24"),
            ("SuitcaseFolder", f"Fonts:{family}"), ("SuitcaseCreator", "DMOV"), ("SuitcaseType", "FFIL"),
            ("SuitcaseComment", f"Bitmap companion of {post_script}, all sizes, made by the foundry")]


def face(number, post_script, family, style, chance):
    lines = [("Handler", "DirectoryHandler"), ("FontType", chance.choice(["Type1", "OpenType", "TrueType"])),
             ("FontName", post_script), ("FamilyName", family), ("StyleName", style),
             ("MenuName", f"{family} {style}"), ("StyleBits", number % 8),
             ("WeightClass", chance.choice([300, 400, 600, 700])), ("WidthClass", 5), ("AngleClass", number % 2),
             ("FullName", f"{family} {style}"), ("WritingScript", "Roman"), ("OutlineFileName", outline(number)),
             ("DataFormat", chance.choice(FORMATS)), ("UsesStandardEncoding", "yes"), ("isCFF", "no"),
             ("FileLength", 30000 + number * 13), ("FileModTime", 1042387200 + number),
             ("DesignSize", -1), ("NameArray", f"0,Mac,4,{family} {style}"), ("NameArray", f"0,Win,1,{family}")]
    return lines[:chance.randint(18, 21)]


def record_text(lines, end):
    return end.join(["%BeginFont", *(f"{key}:{value}" for key, value in lines), "%EndFont", "", ""])


def write_outline(root, number):
    path = root / "Fonts" / outline(number).replace("\\", "/")
    path.parent.mkdir(parents=True, exist_ok=True)
    path.touch()


def codes(text):
    return "".join(c if c.isascii() and c.isalnum() else "".join(
        f"\\{int.from_bytes(unit, 'big'):04X}" for unit in units(c)) for c in text)


def units(character):
    data = character.encode("utf-16-be")
    return [data[i:i + 2] for i in range(0, len(data), 2)]


def single_byte_codes(text):
    return "".join(c if c.isascii() and c.isalnum() else f"\\{c.encode('mac_roman')[0]:02X}" for c in text)


def write_database(path, faces):
    with open(path, "w", encoding="ascii", newline="") as file:
        file.write("; font names\r\nversion=2.5\r\n")
        for post_script, family, style in faces:
            file.write(f"[{post_script}]\r\nf=1,{single_byte_codes(family)}\r\nf={codes(family)}\r\ns={codes(style)}\r\n")
        file.write("[end]\r\n")


def make(folder, records, lists=4, encoding="mac_roman", outlines=True):
    adobe = pathlib.Path(folder) / "usr/local/share/Adobe"
    chance = random.Random(records)
    faces, texts, written, number = [], [[] for _ in range(lists)], 0, 0
    while written < records:
        post_script, family, style = names(number, chance)
        faces.append((post_script, family, style))
        end, target = "\r\n"[number % lists % 2], texts[number % lists]
        if number % 3 == 0 and written + 1 < records:
            target.append(record_text(suitcase(number, post_script, family), end))
            written += 1
        target.append(record_text(face(number, post_script, family, style, chance), end))
        written += 1
        if outlines:
            write_outline(adobe, number)
        number += 1
    for index, text in enumerate(texts):
        path = adobe / "TypeSpt" / f"Lists {index // 2}" / f"AdobeFnt{index:02}.lst"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(("%!Adobe-FontList 1.07" + "\r\n"[index % 2] * 2 + "".join(text)).encode(encoding))
    write_database(adobe / "TypeSpt/FntNames.db", faces)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder")
    parser.add_argument("--records", type=int, default=10000)
    parser.add_argument("--lists", type=int, default=4)
    parser.add_argument("--encoding", choices=["utf-8", "mac_roman"], default="mac_roman")
    parser.add_argument("--no-outlines", action="store_true")
    arguments = parser.parse_args()
    make(arguments.folder, arguments.records, arguments.lists, arguments.encoding, not arguments.no_outlines)
