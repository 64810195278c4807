"""Makes a font whose digits are those that an OpenType feature puts in their place, for Qt 6.4 cannot switch features on.

Usage: figures.py FONT FEATURE FAMILY OUT

FEATURE is lnum (digits as high as capitals) or tnum (digits of one width). Nothing but the ten digits and the names
changes: the licence of the fonts (OFL) lets nobody call a changed one by the name of the original. The same font gives
the same bytes.
"""

import sys

from fontTools.ttLib import TTFont

DIGITS = range(ord("0"), ord("9") + 1)
FAMILY, FULL, POSTSCRIPT, DESCRIPTION, TYPOGRAPHIC_FAMILY = 1, 4, 6, 10, 16
NAMES = (FAMILY, 3, FULL, POSTSCRIPT, TYPOGRAPHIC_FAMILY, 18, 20, 21)


def substitutes(font, feature):
    """Which glyph the feature puts in place of which."""
    gsub = font["GSUB"].table
    lookups = {i for record in gsub.FeatureList.FeatureRecord if record.FeatureTag == feature
               for i in record.Feature.LookupListIndex}
    result = {}
    for lookup in sorted(lookups):
        for table in gsub.LookupList.Lookup[lookup].SubTable:
            table = getattr(table, "ExtSubTable", table)
            result.update(getattr(table, "mapping", {}))
    return result


def change_digits(font, feature):
    instead = substitutes(font, feature)
    maps = {id(table.cmap): table.cmap for table in font["cmap"].tables if table.isUnicode()}  # tables share them
    for glyphs in maps.values():
        for digit in DIGITS:
            glyphs[digit] = instead[glyphs[digit]]


def change_names(font, family):
    table = font["name"]
    original = table.getBestFamilyName()
    for name in list(table.names):
        text = name.toUnicode()
        if name.nameID == POSTSCRIPT or name.nameID == 3 or name.nameID == 20:
            name.string = text.replace(original.replace(" ", ""), family.replace(" ", ""))
        elif name.nameID in NAMES:
            name.string = text.replace(original, family)
    table.setName(f"{original} with other digits", DESCRIPTION, 3, 1, 0x409)
    if "CFF " in font:
        postscript = table.getDebugName(POSTSCRIPT)
        cff = font["CFF "].cff
        cff.fontNames = [postscript]
        cff.topDictIndex[0].FamilyName = family
        cff.topDictIndex[0].FullName = table.getDebugName(FULL)


def main():
    source, feature, family, out = sys.argv[1:]
    font = TTFont(source, recalcTimestamp=False)
    try:
        change_digits(font, feature)
    except KeyError as missing:
        sys.exit(f"{source} has no {missing} to make its digits by")
    change_names(font, family)
    font.save(out)


main()
