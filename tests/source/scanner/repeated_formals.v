// run: --lint
`define TWICE(a, b, a) a + b // expect: error VERI-1031 10308 "formal argument \"a\" of macro \"TWICE\" is repeated"
`define ONCE(a, b) a + b
