// Receiver: sixteen samples a bit, majority of the three in the middle, with parity and framing checks.
module uart_rx (
    input            clk,
    input            rst,
    input            tick,
    input            enable,
    input      [1:0] bits,
    input            parity_on,
    input            parity_odd,
    input            rxd,
    output reg [7:0] data,
    output reg       valid,
    output reg       parity_error,
    output reg       frame_error
);

    localparam IDLE = 3'd0, START = 3'd1, DATA = 3'd2, PARITY = 3'd3, STOP = 3'd4;

    // The line comes from another clock domain: two registers, preset to the idle level.
    reg [1:0] sync;
    always @(posedge clk or posedge rst)
        if (rst) sync <= 2'b11;
        else     sync <= {sync[0], rxd};
    wire line = sync[1];

    reg [2:0] state;
    reg [3:0] phase;
    reg [2:0] index;
    reg [7:0] shift;
    reg       parity;
    reg [2:0] samples;

    function majority;
        input [2:0] s;
        majority = (s[0] & s[1]) | (s[1] & s[2]) | (s[0] & s[2]);
    endfunction

    wire level   = majority(samples);
    wire decide  = tick & (phase == 4'd10);
    wire bit_end = tick & (&phase);

    always @(posedge clk or posedge rst) begin
        if (rst) begin
            state        <= IDLE;
            phase        <= 4'd0;
            index        <= 3'd0;
            shift        <= 8'd0;
            parity       <= 1'b0;
            samples      <= 3'b111;
            data         <= 8'd0;
            valid        <= 1'b0;
            parity_error <= 1'b0;
            frame_error  <= 1'b0;
        end else begin
            valid <= 1'b0;

            if (tick) begin
                phase <= phase + 4'd1;
                if (phase >= 7 && phase <= 9)
                    samples <= {samples[1:0], line};
            end

            case (state)
                IDLE: if (enable && !line) begin
                    state  <= START;
                    phase  <= 4'd0;
                    index  <= 3'd0;
                    shift  <= 8'd0;
                    parity <= parity_odd;
                end

                START: begin
                    if (decide && level) state <= IDLE;       // a glitch, not a start bit
                    if (bit_end)         state <= DATA;
                end

                DATA: begin
                    if (decide) begin
                        shift  <= {level, shift[7:1]};
                        parity <= parity ^ level;
                    end
                    if (bit_end) begin
                        index <= index + 3'd1;
                        if (index == {1'b1, bits})
                            state <= parity_on ? PARITY : STOP;
                    end
                end

                PARITY: begin
                    if (decide) parity <= parity ^ level;
                    if (bit_end) state <= STOP;
                end

                STOP: if (decide) begin
                    valid        <= 1'b1;
                    data         <= shift >> (2'd3 - bits);
                    frame_error  <= ~level;
                    parity_error <= parity_on & parity;
                    state        <= IDLE;
                end

                default: state <= IDLE;
            endcase
        end
    end

endmodule
