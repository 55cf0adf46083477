# Prints a property list as JSON.
import json, plistlib, sys

print(json.dumps(plistlib.loads(sys.stdin.buffer.read(), fmt=plistlib.FMT_XML)))
