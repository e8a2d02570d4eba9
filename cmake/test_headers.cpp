// The program whose precompiled header the tests reuse; it has no test of its own.
