# make demo     install what is needed, build, and run a job whose result you can look at
# make check    install what is needed, build, and pass all tests
# The other targets expect what these two installed.

.PHONY: demo check build install bench fuzz tidy format docs coverage clean

PREFIX ?= /usr/local
FUZZ_SECONDS ?= 3600
# Ninja where present; a build folder that exists keeps what it was made with.
ifneq ($(shell command -v ninja),)
export CMAKE_GENERATOR ?= Ninja
endif

demo: | dependencies build
	@examples/demo.sh build/release/runner/vornwout

check:
	@cmake/install-dependencies.sh check
	@tests/check.sh

.PHONY: dependencies
dependencies:
	@cmake/install-dependencies.sh build

build:
	@cmake --preset release -DVORN_TESTS=$$(test -e /usr/include/gtest/gtest.h -a -e /usr/include/benchmark/benchmark.h && echo ON || echo OFF) >/dev/null
	@cmake --build --preset release --parallel $$(nproc)

install: build
	cmake --install build/release --prefix $(PREFIX)

bench: build
	@bench/run.sh build/release/bench

fuzz:
	@fuzz/run.sh $(FUZZ_SECONDS)

tidy:
	@tests/tidy.sh

format:
	@tests/format.sh -i

docs: build
	build/release/runner/vornwout help --markdown > docs/language-reference.md
	build/release/runner/vornwout help --messages > docs/messages.md

coverage:
	@tests/coverage.sh

clean:
	rm -rf build
