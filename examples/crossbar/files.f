# A parameterised crossbar switch built with generate loops
rtl/rr_arbiter.v
rtl/onehot_mux.v
rtl/skid_buffer.v
rtl/crossbar.v
