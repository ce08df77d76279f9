1initial $display("a\\b \"c\"\n");
