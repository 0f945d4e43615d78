#!/usr/bin/env bash
# Fails when a C++ file of the project is not formatted by the root .clang-format.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -- '*.cpp' '*.h' | xargs clang-format --dry-run --Werror
