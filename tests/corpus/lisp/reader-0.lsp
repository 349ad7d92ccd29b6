'Foo
(eq 'abc 'ABC)
(vl-symbol-name 'aB)
'(1+ 1- << a->b m1% % @::x c:foo 2elinc md5:int->bits v^v x.y)
'(7 +7 -7 007)
0606105819
'(1.0 5. 1e3 1.5E-2 .5 -.5)
'(1e 1.5.2 + - 1e+ e5)
3614090360
(type 3614090360)
'(2147483647 2147483648 -2147483648 -2147483649)
(+ 1 ;|x|; 2)
(+ 1 ; to the end of the line
2)
(list 1 ;| spans
lines ( " |; 2)
";|text|;"
;| not ;| nested |; 5
"a
b"
(strlen "a\nb")
(ascii "\101")
(vl-string->list "\\\"\n\r\t\e\101")
(vl-string->list "\U+00B0\u+0105")
"\P"
"\\P"
(vl-string->list "ąŁ°")
(vl-prin1-to-string '('a 1))
'(L . '(19 . 7))
(caddr '(L . '(19 . 7)))
''a
'()
'(0 . "LINE")
'(1 . (2 3))
'(1 2 . 3)
'(1 .5)
'(a.b . c)
(eq nil '())
T
't
