# make demo     install what is needed, build, and run a job whose result you can look at
# make check    install what is needed, build, and pass all tests
# The other targets expect what these two installed.

.PHONY: demo check test build install bench fuzz tidy format docs coverage clean

PREFIX ?= /usr/local
FUZZ_SECONDS ?= 3600

demo:
	@cmake/install-dependencies.sh build
	@cmake/build.sh release -DVORN_TESTS=OFF
	@examples/demo.sh build/release/runner/vornwout

check:
	@cmake/install-dependencies.sh check
	@tests/check.sh

# The unit tests without sanitizers, as optimised code meets them.
test:
	@cmake/build.sh release -DVORN_TESTS=ON -DVORN_UNIT_TESTS=ON
	@ctest --test-dir build/release --output-on-failure

build:
	@cmake/build.sh release

install: build
	cmake --install build/release --prefix $(PREFIX)

bench: build
	@bench/run.sh build/release/bench

fuzz:
	@cmake/build.sh fuzzing
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
