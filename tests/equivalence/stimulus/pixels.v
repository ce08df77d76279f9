// Stimulus of the image pipeline: images of a few lines of changing width, whose neighbours are mostly alike, with
// settings that change now and then.
integer width, column, row, height;
reg [23:0] last_pixel;

initial begin
  width = 8;
  column = 0;
  row = 0;
  height = 5;
  last_pixel = 0;
end

task stimulus;
  begin
    rst = cycle < 4;
    // A beat was taken when both sides were ready before the clock
    if (!rst && in_valid && taken) begin
      column = column + 1;
      if (column >= width) begin
        column = 0;
        row = row + 1;
        if (row >= height) begin
          row = 0;
          width = 3 + $urandom(seed) % 12;
          height = 2 + $urandom(seed) % 6;
        end
      end
      if ($urandom(seed) % 4 == 0) last_pixel = $urandom(seed);
      else last_pixel = last_pixel + ($urandom(seed) & 24'h0f0f0f);
    end
    in_valid = cycle > 6 && $urandom(seed) % 8 != 0;
    in_first = row == 0 && column == 0;
    in_last = column == width - 1;
    in_pixel = last_pixel;
    out_ready = $urandom(seed) % 8 < 6;
    write = $urandom(seed) % 64 == 0;
    addr = $urandom(seed);
    wdata = $urandom(seed);
    if (write) begin
      addr = $urandom(seed) % 6;
      if (addr == 0) wdata[0] = 1;
      if (addr == 1) wdata[2:0] = $urandom(seed) % 6;
      if (addr == 2) wdata = $urandom(seed) % 2 ? 0 : $urandom(seed);
      if (addr == 3 || addr == 4) wdata = 32 + $urandom(seed) % 64;
    end
  end
endtask

reg taken;
initial taken = 0;
always @(posedge clk) taken = in_valid && in_ready;
