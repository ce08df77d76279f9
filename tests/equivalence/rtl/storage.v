// Registers, latches, tristates, memories.
module regs (input clk, input rst, input en, input load, input [7:0] d, output reg [7:0] q, output reg [7:0] count,
             output reg t, output reg [3:0] shift);
    always @(posedge clk)
        if (rst) q <= 8'h3C;
        else if (en) q <= d;
    always @(posedge clk) begin
        if (load) count <= d;
        else if (en) count <= count + 1;
        if (rst) count <= 0;
    end
    always @(negedge clk) if (en) t <= ~t & ~rst;
    always @(posedge clk) shift <= {shift[2:0], rst ? 1'b0 : d[0]};
endmodule

module async_regs (input clk, input rst_n, input set, input en, input [3:0] d, output reg [3:0] q,
                   output reg s, output reg [3:0] count);
    always @(posedge clk or negedge rst_n)
        if (!rst_n) q <= 4'd5;
        else if (en) q <= d;
    always @(posedge set or posedge clk)
        if (set) s <= 1'b1;
        else s <= s ^ d[0];
    always @(posedge clk, negedge rst_n)
        if (rst_n == 1'b0) count <= 0;
        else begin
            count <= count + 1'b1;
            if (count == 4'd9) count <= 4'd0;
        end
endmodule

module blocking (input clk, input [3:0] a, b, output reg [3:0] x, y, z);
    reg [3:0] t;
    always @(posedge clk) begin
        t = a + b;
        x <= t;
        t = t ^ 4'h3;
        y <= t;
        z <= y;
    end
endmodule

module latches (input g, input rst, input [3:0] d, input [1:0] s, output reg [3:0] q, output reg r);
    always @* if (g) q = d;
    always @(g or rst or d)
        if (rst) r = 1'b0;
        else if (g) r = d[0];
endmodule

module tristates (input oe_a, oe_b, input [3:0] a, b, output [3:0] y, inout [1:0] pad, output [1:0] from_pad);
    assign y = oe_a ? a : 4'bz;
    assign y = oe_a ? 4'bz : b;
    assign pad = oe_b ? b[1:0] : 2'bzz;
    assign from_pad = pad;
endmodule

module memory (input clk, input we, input [2:0] wa, ra, input [3:0] d, output [3:0] q, output reg [3:0] qr);
    reg [3:0] mem [0:7];
    always @(posedge clk) begin
        if (we) mem[wa] <= d;
        qr <= mem[ra];
    end
    assign q = mem[ra];
endmodule

module rom (input [3:0] a, output reg [7:0] y, output [3:0] z);
    always @* case (a)
        0: y = 8'h3F; 1: y = 8'h06; 2: y = 8'h5B; 3: y = 8'h4F; 4: y = 8'h66; 5: y = 8'h6D; 6: y = 8'h7D; 7: y = 8'h07;
        8: y = 8'h7F; 9: y = 8'h6F; 10: y = 8'h77; 11: y = 8'h7C; 12: y = 8'h39; 13: y = 8'h5E; 14: y = 8'h79;
        15: y = 8'h71;
    endcase
    reg [3:0] table_ [0:15];
    integer i;
    initial for (i = 0; i < 16; i = i + 1) table_[i] = i * 5;
    assign z = table_[a];
endmodule

module fsm (input clk, rst, go, stop, output reg busy, output [1:0] code);
    localparam IDLE = 2'd0, RUN = 2'd1, WAIT = 2'd2, DONE = 2'd3;
    reg [1:0] state, next;
    always @(posedge clk or posedge rst) if (rst) state <= IDLE; else state <= next;
    always @* begin
        next = state;
        busy = 1'b1;
        case (state)
            IDLE: begin busy = 1'b0; if (go) next = RUN; end
            RUN: if (stop) next = WAIT;
            WAIT: next = go ? RUN : DONE;
            DONE: next = IDLE;
        endcase
    end
    assign code = state;
endmodule
