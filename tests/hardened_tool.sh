#!/bin/sh
# Whether the tool was built with what shall make faults harmless: at a random address, its tables
# of addresses read-only from the start, no stack to execute, checks of the stack and of library calls.
#
#   hardened_tool.sh READELF TOOL
set -eu
expect() {
  "$readelf" -W "$1" "$tool" | grep -Eq "$2" || { echo "$tool: no $3" >&2 && exit 1; }
}
readelf=$1
tool=$2
expect -h 'Type: +DYN' "position-independent executable"
expect -l 'GNU_RELRO' "read-only relocations"
expect -d 'FLAGS.* NOW|BIND_NOW' "binding at the start"
expect -l 'GNU_STACK.* RW ' "stack without execution"
expect -s '__stack_chk_fail' "stack protector"
expect -s '__[a-z]+_chk' "fortified library calls"
