1interface bus #(parameter W = 4) (input logic clk);
  logic [W-1:0] d; modport mst (output d, input clk), slv (input d);
endinterface
