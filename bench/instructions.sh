#!/bin/sh
# Counts the instructions that a dozen pairs take for each byte of input, with callgrind, and writes
# them to bench/instructions.json and .md: numbers that a later change can be compared with on any
# machine. ENCCONV_KERNELS chooses the kernels, as always.
set -eu
exec "$(dirname "$0")/run.sh" --instructions
