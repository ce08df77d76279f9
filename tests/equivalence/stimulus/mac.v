// Stimulus of the Ethernet MAC: frames with good and bad sequences come from the line, frames of all lengths are sent,
// in half duplex with collisions, or looped back. Addresses and headers are taken from a small set, so that the filter
// and the parser meet what they look for.
reg [7:0]  line [0:511];
integer    line_length, line_at, line_gap, send_left, setup, part, value, position;
reg [31:0] line_crc;
reg [31:0] ip_sum;

function [31:0] crc_byte(input [31:0] state, input [7:0] data);
  integer bit_number;
  begin
    crc_byte = state ^ data;
    for (bit_number = 0; bit_number < 8; bit_number = bit_number + 1)
      crc_byte = crc_byte[0] ? (crc_byte >> 1) ^ 32'hedb88320 : crc_byte >> 1;
  end
endfunction

initial begin
  line_at = 0;
  line_length = 0;
  line_gap = 10;
  send_left = 0;
  setup = 0;
end

task put(input [7:0] data);
  begin
    line[line_length] = data;
    line_crc = crc_byte(line_crc, data);
    line_length = line_length + 1;
  end
endtask

task make_frame;
  begin
    line_length = 0;
    value = $urandom(seed) % 16;
    for (position = 0; position < (value == 0 ? 3 : 7); position = position + 1) put(8'h55);
    put(value == 1 ? 8'h5d : 8'hd5);
    line_crc = 32'hffffffff;
    part = $urandom(seed) % 8;
    for (position = 0; position < 6; position = position + 1)
      put(part == 0 ? 8'hff : part == 1 ? $urandom(seed) : part == 2 && position == 0 ? 8'h01 : 8'h22 + position * 16);
    for (position = 0; position < 6; position = position + 1) put($urandom(seed));
    if ($urandom(seed) % 4 == 0) begin
      put(8'h81);
      put(8'h00);
      put($urandom(seed));
      put($urandom(seed));
    end
    part = $urandom(seed) % 4;
    if (part == 0) begin
      put($urandom(seed));
      put($urandom(seed));
    end else begin
      put(8'h08);
      put(8'h00);
      position = line_length;
      put($urandom(seed) % 8 ? 8'h45 : 8'h46);
      put(8'h00);
      put(8'h00);
      put(40 + $urandom(seed) % 64);
      put($urandom(seed));
      put($urandom(seed));
      put($urandom(seed) % 8 ? 8'h40 : 8'h20);
      put(8'h00);
      put(8'h40);
      put($urandom(seed) % 4 == 0 ? 8'd1 : $urandom(seed) % 2 ? 8'd6 : 8'd17);
      value = line_length;
      line_length = line_length + 2;
      repeat (8) begin
        line[line_length] = $urandom(seed);
        line_length = line_length + 1;
      end
      ip_sum = 0;
      line[value] = 0;
      line[value + 1] = 0;
      for (part = position; part < line_length; part = part + 2)
        ip_sum = ip_sum + {line[part], line[part + 1]};
      ip_sum = ip_sum[15:0] + ip_sum[31:16];
      ip_sum = ip_sum[15:0] + ip_sum[31:16];
      line[value] = ~ip_sum[15:8];
      line[value + 1] = ~ip_sum[7:0];
      for (part = value; part < line_length; part = part + 1) line_crc = crc_byte(line_crc, line[part]);
    end
    repeat ($urandom(seed) % 8 ? 20 + $urandom(seed) % 60 : $urandom(seed) % 200) put($urandom(seed));
    if ($urandom(seed) % 8 == 0) line_crc = line_crc ^ 32'h100;
    value = ~line_crc;
    for (position = 0; position < 4; position = position + 1) begin
      line[line_length] = value >> (8 * position);
      line_length = line_length + 1;
    end
    line_at = 0;
  end
endtask

task stimulus;
  begin
    rst = cycle < 3;
    // The host: the registers are set up anew now and then; else it looks at registers and counters
    sel = cycle > 4 && $urandom(seed) % 4 != 0;
    write = 0;
    addr = $urandom(seed);
    wdata = $urandom(seed);
    if (cycle % 5000 == 5) setup = 0;
    if (setup < 9) begin
      sel = 1;
      write = 1;
      addr = setup << 2;
      case (setup)
        0: wdata = cycle < 5000 ? 32'h0413 : cycle < 10000 ? 32'h0437 : cycle < 15000 ? 32'h0853 : 32'h021f;
        1: wdata = 32'h42526272;
        2: wdata = 32'h2232;
        5: wdata = 32'd150;
        7: wdata = 32'hff;
        default: ;
      endcase
      setup = setup + 1;
    end else if ($urandom(seed) % 32 == 0) begin
      write = 1;
      addr = 24;
    end

    // The line
    phy_rx_valid = 0;
    phy_rx_error = $urandom(seed) % 1500 == 0;
    phy_rx_data = $urandom(seed);
    if (line_gap > 0) begin
      line_gap = line_gap - 1;
      if (line_gap == 0) make_frame;
    end else begin
      phy_rx_valid = 1;
      phy_rx_data = line[line_at];
      line_at = line_at + 1;
      if (line_at == line_length) line_gap = 1 + $urandom(seed) % 20;
    end
    phy_carrier = $urandom(seed) % 16 == 0;
    phy_collision = phy_tx_valid && $urandom(seed) % 60 == 0;
    rx_ready = $urandom(seed) % 8 != 0 && cycle % 3000 > 700;

    // Frames to be sent
    if (tx_ready || !tx_valid) begin
      if (send_left == 0) send_left = $urandom(seed) % 8 ? 1 + $urandom(seed) % 80 : 200 + $urandom(seed) % 100;
      else send_left = send_left - 1;
      tx_valid = send_left != 0 && cycle > 20;
      tx_last = send_left == 1;
      tx_data = $urandom(seed);
    end
  end
endtask
