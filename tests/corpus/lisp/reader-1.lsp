pi
pause
:vlax-true
:foo
(read "(1 2")
(read ")")
(read "\"abc")
(read "(. a)")
(read "(1 . 2 3)")
(read ". a")
(read "(1 . )")
(+ 1 2
