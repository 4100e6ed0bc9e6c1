"""Prints the tables of a page as the screen has them: cells of a row, without trailing dashes, joined by "|"."""
import sys
import xml.etree.ElementTree as tree

HTML = "{http://www.w3.org/1999/xhtml}"
for table in tree.parse(sys.argv[1]).iter(HTML + "table"):
    for row in table.iter(HTML + "tr"):
        cells = ["".join(cell.itertext()) for cell in row]
        while len(cells) > 1 and cells[-1] in ("-", ""):
            cells.pop()
        if len(cells) > 1:
            print("|".join(cells))
