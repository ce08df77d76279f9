1module m2 (half_t h, output p::byte_t o); assign o = h[7:0]; endmodule
