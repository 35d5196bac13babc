#!/usr/bin/env bash
# Prints the lines of test code against the lines of program code (the tool,
# veltor-cli and the simulator), counting the C++, shell and Python sources
# git tracks. Tests should stay at a quarter to a third of the program code.
set -euo pipefail
cd "$(dirname "$0")/.."
count() {
    git ls-files -- "$@" | grep -E '\.(cpp|h|sh|py)$' | tr '\n' '\0' | xargs -0 cat | wc -l
}
code=$(count app discovery netconf auth update sdcard cli camsim)
tests=$(count tests)
awk -v code="$code" -v tests="$tests" 'BEGIN {
    printf "program code: %d lines\ntests:        %d lines\nratio:        %.2f test lines per line of code (aim: 0.25 to 0.33; at most %d test lines)\n",
        code, tests, tests / code, code / 3
}'
