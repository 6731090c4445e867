"""The same steps from Python: load a real table, write it back, compare every cell.

    table_round_trip.py TABLE [FOLDER]
"""
import sys

import veltgeneral

source, folder = sys.argv[1], (sys.argv[2:] or ["."])[0]
files = veltgeneral.CreateObject("VeltGeneral.FileUtility")
err, text = files.readFile(source, "")
fields = text.split("\n", 1)[0].count(";") + 1
files.writeFile(folder + "/table.csv", 0, text.replace("\r\n", "\n").replace("\n", "\r\n"))
err, table, rows = files.getArrayFromCsvFile(folder + "/table.csv", veltgeneral.TextArray(), fields, 0)
err, table = files.writeCsvFileFromArray(folder + "/table written.csv", table, rows, fields)
err, again, rowsAgain = files.getArrayFromCsvFile(
    folder + "/table written.csv", veltgeneral.TextArray(), fields, 0)
same = rows == rowsAgain and all(
    table[field, row] == again[field, row]
    for row in range(1, rows + 1) for field in range(1, fields + 1))
print(f"{rows} rows of {fields} fields: {'every cell survived' if same else 'cells differ'}")
sys.exit(0 if same else 1)
