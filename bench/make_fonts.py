#!/usr/bin/env python3
"""Makes a folder of fonts, of any number, with a configuration for fontconfig that has no others.

    make_fonts.py FOLDER COUNT

FOLDER/fonts.conf is what FONTCONFIG_FILE may point at. Each font is a family of its own with the Latin letters of one
of DejaVu's. Four are not as fonts should be: one file is cut off, one is empty, one lets whoever draws one of its
letters count for long, and one has a name that would like to be something else.
"""
import io
import pathlib
import random
import sys

from fontTools import subset
from fontTools.fontBuilder import FontBuilder
from fontTools.misc.psCharStrings import T2CharString

DEJAVU = pathlib.Path("/usr/share/fonts/truetype/dejavu")
BASES = ["DejaVuSans", "DejaVuSans-Bold", "DejaVuSansMono", "DejaVuSerif"]
PLACE = "Family 00000"
HOSTILE = "<b>&Bold</b>\n\u202eEvil\u0007\u2028" + "W" * 3000


def names(family, postScript="Family-00000"):
    return {"familyName": family, "styleName": "Regular", "uniqueFontIdentifier": family, "fullName": family,
            "psName": postScript, "version": "Version 1.0"}


def saved(font):
    buffer = io.BytesIO()
    font.save(buffer)
    return buffer.getvalue()


def base(name, *own):
    """The Latin letters of a font, under another name."""
    options = subset.Options(hinting=False, layout_features=["kern"], name_IDs=[], drop_tables=["FFTM"])
    font = subset.load_font(DEJAVU / f"{name}.ttf", options)
    letters = subset.Subsetter(options)
    letters.populate(unicodes=range(0x20, 0x7F))
    letters.subset(font)
    FontBuilder(font=font).setupNameTable(names(*own or [PLACE]))
    return saved(font)


def slow():
    """Its letters are subroutines that call others 64 times each, and draw nothing for millions of steps."""
    letters = {".notdef": None, "space": 0x20, **{chr(c): c for c in range(0x41, 0x5B)},
               **{chr(c): c for c in range(0x61, 0x7B)}}
    builder = FontBuilder(1000, isTTF=False)
    builder.font.recalcBBoxes = False  # would count for as long
    builder.setupGlyphOrder(list(letters))
    builder.setupCharacterMap({code: glyph for glyph, code in letters.items() if code})
    call = T2CharString(program=[600, -107, "callgsubr", "endchar"])
    builder.setupCFF("Slow", {}, {glyph: call for glyph in letters}, {})
    routines = builder.font["CFF "].cff.GlobalSubrs
    for level in range(4):  # numbers of subroutines begin at -107
        routines.append(T2CharString(program=[level - 106, "callgsubr"] * 64 + ["return"]))
    routines.append(T2CharString(program=[1, "random", "drop", "drop", "return"]))
    builder.setupHorizontalMetrics({glyph: (600, 0) for glyph in letters})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    builder.setupNameTable(names("Slow", "Slow"))
    builder.setupOS2(sTypoAscender=800, sTypoDescender=-200, usWinAscent=800, usWinDescent=200)
    builder.setupPost()
    return saved(builder.font)


def make(folder, count):
    """So many files; the same count gives the same ones."""
    folder = pathlib.Path(folder).resolve()
    fonts = folder / "fonts"
    fonts.mkdir(parents=True)
    bases = [base(name) for name in BASES]
    files = {"broken.ttf": bases[0][:len(bases[0]) // 2], "empty.ttf": b"", "slow.otf": slow(),
             "hostile.ttf": base(BASES[0], HOSTILE, "Hostile")}
    chance = random.Random(count)
    for number in range(count - len(files)):
        own = chance.choice(bases)
        for place in (PLACE, "Family-00000"):
            for encoding in ("utf-16-be", "ascii"):
                own = own.replace(place.encode(encoding), place.replace("00000", f"{number:05}").encode(encoding))
        files[f"{number:05}.ttf"] = own
    for name, content in files.items():
        (fonts / name).write_bytes(content)
    configuration = folder / "fonts.conf"
    configuration.write_text(f"<fontconfig><dir>{fonts}</dir><cachedir>{folder}/cache</cachedir></fontconfig>")
    return configuration


if __name__ == "__main__":
    make(sys.argv[1], int(sys.argv[2]))
