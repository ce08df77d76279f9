// Stimulus of the core: first a program that gives every register a value, then random instructions, mostly legal ones,
// with random memory latency, random data and interrupts now and then. The core's own requests decide nothing, so the
// same inputs fit source and netlist.
reg [5:0]  next_register;
reg [31:0] word;
reg [4:0]  opcode_pick;

task random_instruction;
  begin
    word = $urandom(seed);
    opcode_pick = $urandom(seed);
    case (opcode_pick)
      0, 1, 2, 3, 4, 5:  begin word[6:0] = 7'b0110011; word[31:25] = word[25] ? 7'b0100000 & {7{word[12] ^~ word[14]}} : 7'b0; end
      6, 7, 8, 9, 10:    begin word[6:0] = 7'b0010011; if (word[13:12] == 2'b01) word[31:25] = {1'b0, word[30] & word[14], 5'b0}; end
      11, 12, 13:        begin word[6:0] = 7'b0000011; if (word[21]) word[21:20] = 0; end
      14, 15, 16:        word[6:0] = 7'b0100011;
      17, 18, 19, 20:    begin word[6:0] = 7'b1100011; word[8] = 0; end
      21, 22:            word[6:0] = 7'b0110111;
      23:                word[6:0] = 7'b0010111;
      24:                begin word[6:0] = 7'b1101111; word[21] = 0; end
      25:                word = {word[31:22], 2'b00, word[19:15], 3'b000, word[11:7], 7'b1100111};
      26, 27, 28:        begin
                           word[6:0] = 7'b1110011;
                           if (word[12] | word[13])
                             case (word[31:28])
                               0, 1, 2:  word[31:20] = 12'h300;
                               3:        word[31:20] = 12'h304;
                               4:        word[31:20] = 12'h305;
                               5, 6:     word[31:20] = 12'h340;
                               7:        word[31:20] = 12'h341;
                               8:        word[31:20] = 12'h342;
                               9:        word[31:20] = 12'hB00;
                               10:       word[31:20] = 12'hB02;
                               11:       word[31:20] = 12'hB80;
                               12:       word[31:20] = 12'h344;
                               13:       word[31:20] = 12'hF14;
                               default:  ;
                             endcase
                           else
                             case (word[31:30])
                               0: word = 32'h0000_0073;
                               1: word = 32'h0010_0073;
                               default: word = 32'h3020_0073;
                             endcase
                         end
      29:                word[6:0] = 7'b0001111;
      default:           ;
    endcase
  end
endtask

task stimulus;
  begin
    rst_n = cycle >= 3;
    if (cycle < 3) next_register = 1;
    imem_ready = (next_register < 33) ? 1'b1 : ($urandom(seed) % 4) != 0;
    dmem_ready = ($urandom(seed) % 3) != 0;
    dmem_rdata = $urandom(seed);
    irq_timer = (next_register < 33) ? 1'b0 : ($urandom(seed) % 64) == 0;
    irq_external = (next_register < 33) ? 1'b0 : ($urandom(seed) % 64) == 0;
    if (next_register < 33) begin
      word = {$urandom(seed), next_register[4:0], 7'b0110111};
      if (imem_valid && imem_ready) next_register = next_register + 1;
    end else
      random_instruction;
    imem_rdata = word;
  end
endtask
