# sources
a.v b.sv // more
--std=vlog2001 c.v --lib work2 d.v -y dir
+define+A=1+B +incdir+x+y -D "C=a b" $HOME/z.v ${X}/q.v
-G W=8 -G N=8'hff -G S=4'd9 --set a=b --option VERILOG_MACRO=X -o out.v --top m --lint
