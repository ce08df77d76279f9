// State machines, which are built with one register per state.

// Two processes, an asynchronous reset, states by parameters.
module fsm_two (input clk, rst_n, go, stop, abort, output reg busy, output done);
    localparam IDLE = 3'd0, RUN = 3'd3, WAIT = 3'd5, DONE = 3'd6;
    reg [2:0] state, next;
    always @(posedge clk or negedge rst_n) if (!rst_n) state <= IDLE; else state <= next;
    always @* begin
        next = state;
        busy = 1'b1;
        case (state)
            IDLE: begin busy = 1'b0; if (go) next = RUN; end
            RUN: if (stop) next = WAIT; else if (abort) next = IDLE;
            WAIT: next = go ? RUN : DONE;
            default: next = IDLE;
        endcase
    end
    assign done = state == DONE;
endmodule

// One process with a synchronous reset; the state leaves the module as a number.
module fsm_one (input clk, rst, input [1:0] cmd, output reg [3:0] out, output [2:0] code);
    parameter A = 3'b001, B = 3'b010, C = 3'b100, D = 3'b111;
    reg [2:0] state;
    assign code = state;
    always @(posedge clk)
        if (rst) begin
            state <= A;
            out <= 0;
        end else begin
            if (state != A && cmd == 2'd3) state <= A;
            else case (state)
                A: if (cmd[0]) state <= B;
                B: begin state <= cmd[1] ? C : D; out <= out + 1; end
                C: state <= D;
                D: begin state <= A; out <= out ^ 4'h5; end
            endcase
        end
endmodule

// The reset state is not the smallest number; another variable follows the state; the state is compared with what it
// never is.
module fsm_follow (input clk, rst, step, output was_last, is_none, output reg [1:0] shown);
    localparam P = 4, Q = 9, R = 2, S = 12, NONE = 15;
    reg [3:0] state, last;
    always @(posedge clk or posedge rst)
        if (rst) begin
            state <= Q;
            last <= Q;
        end else begin
            last <= state;
            if (step)
                case (state)
                    P: state <= Q;
                    Q: state <= R;
                    R: state <= S;
                    default: state <= P;
                endcase
        end
    assign was_last = last == S && state != S;
    assign is_none = state === NONE || last == P;
    always @* begin
        shown = 0;
        if (state == R) shown = 1;
        else if (last == Q) shown = 2;
    end
endmodule

// What computes with the number keeps it.
module fsm_number (input clk, rst, step, output odd, output [2:0] next_code);
    localparam A = 3'd0, B = 3'd1, C = 3'd2;
    reg [2:0] state;
    always @(posedge clk or posedge rst)
        if (rst) state <= A;
        else if (step)
            case (state)
                A: state <= B;
                B: state <= C;
                default: state <= A;
            endcase
    assign odd = state[0];
    assign next_code = state + 1;
endmodule

// A machine per round, with states of the round's own.
module fsm_rounds (input clk, rst, input [1:0] go, output [1:0] hot, output reg [1:0] warm);
    genvar i;
    generate
        for (i = 0; i < 2; i = i + 1) begin : m
            localparam [2:0] COLD = 3'd1 + i, WARM = 3'd4, HOT = 3'd6 + i;
            reg [2:0] state;
            always @(posedge clk or posedge rst)
                if (rst) state <= COLD;
                else
                    case (state)
                        COLD: if (go[i]) state <= WARM;
                        WARM: state <= go[i] ? HOT : COLD;
                        HOT: if (!go[i]) state <= WARM;
                    endcase
            assign hot[i] = state == HOT;
            always @* warm[i] = state == WARM;
        end
    endgenerate
endmodule

// Blocking assignments in a process, a task that moves on, and a choice in a continuous assignment.
module fsm_task (input clk, rst, a, b, output reg x, output y);
    localparam S0 = 0, S1 = 1, S2 = 2, S3 = 3, S4 = 4;
    reg [2:0] state;
    task move(input to_start);
        if (to_start) state = S0;
        else
            case (state)
                S0: state = S1;
                S1: state = S2;
                S2: state = S3;
                S3: state = S4;
                default: state = S0;
            endcase
    endtask
    always @(posedge clk or posedge rst)
        if (rst) begin
            state = S0;
            x = 0;
        end else begin
            move(a & b);
            if (a) move(b);
            x = state == S3;
        end
    assign y = (state == S2) ? a : (state == S4) ? b : 1'b0;
endmodule

// The reset state is never entered again, so that nothing but the reset is left of its data.
module fsm_once (input clk, rst, go, output y, output [1:0] code);
    localparam START = 2'd1, LEFT = 2'd2, RIGHT = 2'd3;
    reg [1:0] state;
    assign code = state;
    assign y = state == START;
    always @(posedge clk)
        if (rst) state <= START;
        else
            case (state)
                START: state <= LEFT;
                LEFT: if (go) state <= RIGHT;
                RIGHT: if (!go) state <= LEFT;
            endcase
endmodule
