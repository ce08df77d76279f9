// Transmitter: start bit, 5 to 8 data bits with the lowest first, optional parity, one or two stop bits.
module uart_tx (clk, rst, tick, enable, bits, parity_on, parity_odd, two_stop, data, valid, ready, txd, busy);

input        clk;
input        rst;
input        tick;           // sixteen a bit
input        enable;
input  [1:0] bits;           // 0: five data bits ... 3: eight
input        parity_on;
input        parity_odd;
input        two_stop;
input  [7:0] data;
input        valid;
output       ready;
output       txd;
output       busy;

reg          txd;

parameter [2:0] IDLE = 0, START = 1, DATA = 2, PARITY = 3, STOP = 4;

reg [2:0] state;
reg [3:0] phase;
reg [2:0] index;
reg [7:0] shift;
reg       parity;
reg       second_stop;

wire bit_end   = tick && (phase == 4'd15);
wire last_data = (index == {1'b1, bits});

assign ready = (state == IDLE) && enable;
assign busy  = (state != IDLE);

always @(posedge clk)
    if (rst) begin
        state       <= IDLE;
        phase       <= 0;
        index       <= 0;
        shift       <= 0;
        parity      <= 0;
        second_stop <= 0;
        txd         <= 1;
    end else begin
        if (tick && state != IDLE)
            phase <= phase + 1;

        case (state)
            IDLE: begin
                txd <= 1;
                if (valid && enable) begin
                    shift       <= data;
                    parity      <= parity_odd;
                    phase       <= 0;
                    index       <= 0;
                    second_stop <= 0;
                    state       <= START;
                end
            end

            START: begin
                txd <= 0;
                if (bit_end) state <= DATA;
            end

            DATA: begin
                txd <= shift[0];
                if (bit_end) begin
                    shift  <= {1'b0, shift[7:1]};
                    parity <= parity ^ shift[0];
                    index  <= index + 1;
                    if (last_data)
                        state <= parity_on ? PARITY : STOP;
                end
            end

            PARITY: begin
                txd <= parity;
                if (bit_end) state <= STOP;
            end

            STOP: begin
                txd <= 1;
                if (bit_end) begin
                    second_stop <= 1;
                    if (!two_stop || second_stop) state <= IDLE;
                end
            end

            default: state <= IDLE;
        endcase
    end

endmodule
