# The daily commands. Each installs what it needs first (tools/setup is instant when all is there).
#   make build    build/bin/gcad with the module and the libraries beside it
#   make run      the main job on the drawing and the program in examples/
#   make test     what CI runs: format, names, all tests on the release build and, under Wine, on the Windows build
#   make test-all the same, then the tests with sanitizers, the readers of other authors and a brief fuzz run
#   make windows  the same product for Windows in build-windows/bin, and all of it as a zip in out/
#   make check    format, names and lint
#   make bench    the benchmarks, by hand
#   make clean    removes every build tree
.PHONY: build run test test-all windows check bench clean
.DEFAULT_GOAL := build

build:
	@tools/setup build tests
	@tools/build release

run: build
	@tools/setup picture
	@tools/run-example

test:
	@tools/setup build tests page windows check
	@tools/test

test-all:
	@tools/setup build tests page readers windows fuzz check kernel
	@tools/test --all

windows:
	@tools/setup build tests windows
	@tools/build windows
	@tools/windows-zip

check:
	@tools/setup build tests check
	@tools/check

bench:
	@tools/setup build tests bench kernel
	@tools/bench

clean:
	rm -rf build build-debug build-windows build-fuzz build-tidy build-bench out
