#!/usr/bin/env bash
# Inside a clean Debian system, where scripts/test-packages runs it: installs the packages in /trial,
# uses every door, purges them, and compares the system with what it was before.
set -euo pipefail
cd /trial
quietly() { "$@" >log 2>&1 || { tail -n 30 log; return 1; }; }
expect() {  # TEXT COMMAND...
  local wanted=$1 said
  shift
  said=$("$@" 2>&1) || { echo "failed: $*: $said"; exit 1; }
  [ "$said" = "$wanted" ] || { printf '%s\nsaid:   %s\nwanted: %s\n' "$*" "$said" "$wanted"; exit 1; }
}
ours() { for each in *.deb; do dpkg-deb -f "$each" Package; done; }

# What the packages depend on comes first, with the tools of somebody who builds a program, so that the
# difference afterwards is theirs alone.
quietly apt-get update
depends=$(for each in *.deb; do dpkg-deb -f "$each" Depends; echo; done |
          tr ',' '\n' | grep -v veltgeneral | sed '/^ *$/d' | sort -u | paste -sd,)
quietly apt-get satisfy -y --no-install-recommends "$depends"
quietly apt-get install -y --no-install-recommends g++ cmake make pkg-config
listing() {
  find / -xdev \( -path /proc -o -path /dev -o -path /trial -o -path /var/lib/dpkg -o -path /var/lib/apt \
    -o -path /var/log -o -path /var/cache -o -path /tmp \) -prune -o -print | sort
}
listing >before

echo 'Installing'
quietly apt-get install -y --no-install-recommends ./veltgeneral_*.deb ./veltgeneral-tools_*.deb
expect $'ErrInfo\nFileUtility\nRegistryUtility\nFunzioni\ncInifile\nVeltInet\nReporting\nVeltGlobal' \
  sh -c 'velt classes | cut -d" " -f1'
expect true velt call Funzioni.isDateYYYYMMDD 20240229
quietly apt-get install -y --no-install-recommends ./*.deb
for package in $(ours); do
  quietly dpkg --verify "$package"
  [ -f "/usr/share/doc/$package/copyright" ] && [ -f "/usr/share/doc/$package/changelog.Debian.gz" ]
done

echo 'A program, by CMake and by pkg-config'
quietly cmake -S consumer -B built
quietly cmake --build built
expect $'perch\xc3\xa9\r' built/consumer file.txt
# shellcheck disable=SC2046
quietly g++ -std=c++20 consumer/consumer.cpp -o by_pkg_config $(pkg-config --cflags --libs veltgeneral)
expect $'perch\xc3\xa9\r' ./by_pkg_config file.txt

echo 'A document, a report from Python and a page from a server'
printf 'font "Arial" 14\nparagraph "An invoice"\n' >invoice.txt
quietly velt call Funzioni.createPdfFile invoice.txt invoice.pdf
expect %PDF head -c 4 invoice.pdf
expect %PDF env VELTGENERAL_PRINTER=pdf:report.pdf python3 -c '
import veltgeneral
report = veltgeneral.CreateObject("Reporting")
report.outputMode = veltgeneral.torPRINTER
report.openReport()
report.prtTesto(2, 2, 12, True, False, "A report")
report.closeReport()
print(open("report.pdf", "rb").read(4).decode())'
python3 -m http.server --bind 127.0.0.1 8080 >served 2>&1 &
server=$!
for _ in $(seq 50); do grep -q Serving served && break || sleep 0.1; done
expect "$(cat invoice.txt)" velt fetch http://127.0.0.1:8080/invoice.txt
kill "$server"

echo 'Settings, and hosts that find the library by name'
quietly velt registry set 'HKLM\SOFTWARE\Orders' Folder /srv/orders
quietly velt register
expect "$(ldconfig -p | sed -n 's/.*libveltgeneral.so.1 .* => //p')" \
  velt registry get 'HKLM\SOFTWARE\Classes\VeltGeneral.Funzioni\InprocServer32' @

echo 'Purging'
# shellcheck disable=SC2046
quietly apt-get purge -y $(ours)
listing >after
# Somebody's settings, which no package owns.
expect $'/etc/veltgeneral\n/etc/veltgeneral/machine.reg' comm -13 before after
expect '' comm -23 before after
grep -q Orders /etc/veltgeneral/machine.reg
if grep InprocServer32 /etc/veltgeneral/machine.reg; then exit 1; fi
if ldconfig -p | grep veltgeneral; then exit 1; fi
echo 'Nothing but data remains.'
