NAME(A,B)=TEXT
"Pin_1, 2, 3"
"one-hot, safe"
M4K, no_rw_check
PARAMETER_SIGNED_BIN 101
8'bx1
-12
"a\"b"
