# The RV32I core: sources and where their include file lies; paths are relative to this list.
-I rtl
rtl/rv32_alu.v
rtl/rv32_branch.v
rtl/rv32_control.v
rtl/rv32_csr.v
rtl/rv32_decoder.v
rtl/rv32_lsu.v
rtl/rv32_regfile.v
rtl/rv32.v
