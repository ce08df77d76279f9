// A buffer of bytes that is written frame by frame: what was written becomes visible with commit and is forgotten with
// discard; what was read can be given back with rewind until free releases it. Each byte carries an end mark.
module mac_buffer #(
    parameter LOG2 = 8
) (
    input  wire          clk,
    input  wire          rst,

    input  wire          in_valid,
    input  wire [7:0]    in_data,
    input  wire          in_last,
    input  wire          commit,        // with or after the last byte
    input  wire          discard,
    output wire          full,

    output wire          out_valid,
    input  wire          out_ready,
    output wire [7:0]    out_data,
    output wire          out_last,
    input  wire          rewind,
    input  wire          free,

    output wire [LOG2:0] used
);

    localparam [LOG2:0] DEPTH = 1 << LOG2;

    reg [8:0]      store [0:(1 << LOG2) - 1];
    reg [LOG2:0]   write_at;            // next byte
    reg [LOG2:0]   committed;           // end of what can be read
    reg [LOG2:0]   read_at;
    reg [LOG2:0]   kept;                // start of what can be read again

    wire [LOG2:0] write_next = write_at + {{LOG2{1'b0}}, 1'b1};
    wire [LOG2:0] filled     = write_at - kept;

    assign full      = filled == DEPTH;
    assign used      = filled;
    assign out_valid = read_at != committed;

    wire push = in_valid & ~full;
    wire pop  = out_valid & out_ready;

    always @(posedge clk)
        if (push) store[write_at[LOG2-1:0]] <= {in_last, in_data};

    assign {out_last, out_data} = store[read_at[LOG2-1:0]];

    always @(posedge clk or posedge rst)
        if (rst) begin
            write_at  <= 0;
            committed <= 0;
        end else if (discard) begin
            write_at  <= committed;
        end else begin
            if (push) write_at <= write_next;
            if (commit) committed <= push ? write_next : write_at;
        end

    always @(posedge clk or posedge rst)
        if (rst) begin
            read_at <= 0;
            kept    <= 0;
        end else if (rewind) begin
            read_at <= kept;
        end else begin
            if (pop) read_at <= read_at + {{LOG2{1'b0}}, 1'b1};
            if (free) kept <= pop ? read_at + {{LOG2{1'b0}}, 1'b1} : read_at;
        end

endmodule
