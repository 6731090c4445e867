#!/bin/sh
# The shared library LIBRARY exports its C interface, its entry points and namespace veltgeneral, and
# nothing else: whatever else it exported would meet other libraries' symbols in the host.
set -eu
exported=$(nm --dynamic --defined-only --demangle --format=posix "$1")
strangers=$(printf '%s\n' "$exported" |
  grep -vE '^(vg_|Dll|((vtable|typeinfo|typeinfo name) for )?veltgeneral::)' || true)
if [ -n "$strangers" ]; then
  printf 'exported without need:\n%s\n' "$strangers"
  exit 1
fi
for name in vg_create vg_call DllGetClassObject DllCanUnloadNow 'veltgeneral::createObject'; do
  printf '%s\n' "$exported" | grep -q "^$name" || { echo "not exported: $name"; exit 1; }
done
