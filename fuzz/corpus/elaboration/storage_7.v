1module fsm (input clk, rst, go, stop, output reg busy, output [1:0] code);
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
