// Stimulus of the DMA engine: a host that programs the channels and looks at them, and a memory with handshakes that
// hesitate, rare errors, and descriptors below address 256.
reg [31:0] memory [0:4095];
reg [31:0] read_address;
reg [4:0]  read_left;
reg        read_is_fixed;
reg [31:0] write_address;
reg        write_is_fixed;
reg        owes_response;
reg [3:0]  host_step;
reg [1:0]  host_channel;
reg [4:0]  impatience;
integer    word;

initial begin
  for (word = 0; word < 4096; word = word + 1) memory[word] = word * 32'h9e3779b1;
  read_left = 0;
  owes_response = 0;
  host_step = 0;
  host_channel = 0;
  cmd_valid = 0;
end

function [31:0] look(input [31:0] address);
  reg [31:0] r;
  begin
    r = memory[address[13:2]];
    look = r;
    if (address[31:8] == 0)
      case (address[3:2])
        0, 1: look = {18'd0, r[13:0]};
        2: look = {6'd0, r[9] & r[3], r[11] & r[5], 15'd0, r[20:12]};
        3: look = r[5:4] == 0 ? {24'd0, r[15:12], 4'd0} : 32'd0;
      endcase
  end
endfunction

always @(posedge clk) begin
  if (r_valid && r_ready) begin
    read_left <= read_left - 1;
    if (!read_is_fixed) read_address <= read_address + 4;
  end
  if (ar_valid && ar_ready) begin
    read_address <= ar_addr;
    read_left <= ar_len + 1;
    read_is_fixed <= ar_burst == 0;
  end
  if (aw_valid && aw_ready) begin
    write_address <= aw_addr;
    write_is_fixed <= aw_burst == 0;
  end
  if (w_valid && w_ready) begin
    for (word = 0; word < 4; word = word + 1)
      if (w_strb[word]) memory[write_address[13:2]][8*word +: 8] = w_data[8*word +: 8];
    if (!write_is_fixed) write_address <= write_address + 4;
    if (w_last) owes_response <= 1;
  end
  if (b_valid && b_ready) owes_response <= 0;
  if (cmd_valid && cmd_ready) host_step <= host_step + 1;
end

task stimulus;
  begin
    rst = cycle < 3 || cycle % 8192 == 8191;
    if (rst) begin
      read_left = 0;
      owes_response = 0;
    end
    impatience = cycle / 2048;
    ar_ready = read_left == 0 && ($urandom(seed) % 4 != 0);
    r_valid = read_left != 0 && ($urandom(seed) % 8 < 3 + impatience);
    r_data = r_valid ? look(read_address) : $urandom(seed);
    r_last = read_left == 1;
    r_resp = $urandom(seed) % 400 == 0 ? 2'b10 : 2'b00;
    aw_ready = !owes_response && ($urandom(seed) % 4 != 0);
    w_ready = $urandom(seed) % 8 < 2 + impatience;
    b_valid = owes_response && ($urandom(seed) % 4 != 0);
    b_resp = $urandom(seed) % 300 == 0 ? 2'b11 : {1'b0, impatience[0]};
    rsp_ready = $urandom(seed) % 4 != 0;

    if (cmd_ready || !cmd_valid) begin
      cmd_valid = $urandom(seed) % 4 != 0;
      cmd_write = 1;
      cmd_addr = {1'b0, host_channel, host_step[2:0], 2'b00};
      cmd_wdata = $urandom(seed);
      case (host_step)
        0: begin
          host_channel = $urandom(seed);
          cmd_addr = 8'h80;
          cmd_wdata = $urandom(seed) % 8 ? 32'hf : $urandom(seed);
        end
        1: begin
          cmd_addr = 8'h88;
          cmd_wdata = 32'h000f_000d;
        end
        2: cmd_wdata = $urandom(seed) & 32'h3fff;
        3: cmd_wdata = $urandom(seed) & 32'h3fff;
        4: cmd_wdata = $urandom(seed) & ($urandom(seed) % 4 ? 32'hff : 32'h7ff);
        5: cmd_wdata = $urandom(seed) & 32'hf0;
        6: begin
          cmd_addr = {1'b0, host_channel, 5'd0};
          cmd_wdata = ($urandom(seed) & 32'h3f1) | 1;
          if ($urandom(seed) % 4 == 0) cmd_wdata = cmd_wdata | ($urandom(seed) & 32'hc);
        end
        14: begin
          cmd_addr = 8'h84;
          cmd_wdata = $urandom(seed) & 32'h000f_000f;
        end
        15: begin
          cmd_addr = {1'b0, host_channel, 5'd0};
          cmd_wdata = $urandom(seed) % 4 == 0 ? 2 : 0;
          cmd_write = $urandom(seed) % 8 == 0;
        end
        default: begin
          cmd_write = 0;
          cmd_addr = $urandom(seed);
          if ($urandom(seed) % 16) cmd_addr[1:0] = 0;
        end
      endcase
    end
  end
endtask
