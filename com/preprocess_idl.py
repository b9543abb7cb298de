#!/usr/bin/env python3
"""Runs the C preprocessor over an IDL file and joins adjacent texts, which the IDL compiler would not.

preprocess_idl.py OUTPUT.idl PREPROCESSOR COMMAND...
"""
import re
import subprocess
import sys

output, *command = sys.argv[1:]
text = subprocess.run(command, check=True, stdout=subprocess.PIPE, encoding="ascii").stdout
with open(output, "w", encoding="ascii") as stream:
    stream.write(re.sub(r'"\s+"', "", text))
