;;; Every function, the host's and the module's, called with arguments that are wrong in many ways: what may happen is an
;;; error. Run by tests/cli/wrong_arguments_test.py in an empty folder, since files may come of it.
(setq wrong:*spared*
  '("EXIT" "QUIT" "VL-EXIT-WITH-VALUE" "VL-EXIT-WITH-ERROR" "STARTAPP" "GC" "READ-LINE" "VL-FILE-DELETE"
    "VL-FILE-RENAME" "VL-FILE-COPY" "VL-MKDIR" "OPEN" "TRACE" "WHILE" "REPEAT" "FOREACH" "GRREAD"))
(setq wrong:*circle* (entmakex '((0 . "CIRCLE") (10 0.0 0.0 0.0) (40 . 5.0))))
(setq wrong:*line* (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 1)
                               (10 0 0) (10 10 0) (10 5 9))))
(setq wrong:*set* (ssget "_X") wrong:*calls* 0)

(setq wrong:*arguments*
  (list nil '(nil) '(5) '("x") '((1 . 2)) '(-1 -1) '("a" 5) '(nil nil nil) '((1 2 3) (1 2 3)) '(1.5 "x" nil 7)
    (list wrong:*circle*) (list wrong:*circle* 1.0) (list wrong:*circle* '(1 2 3)) (list wrong:*circle* "x")
    (list wrong:*circle* wrong:*circle*) (list wrong:*line* 1e300) (list wrong:*set*)
    (list wrong:*set* wrong:*circle*) (list wrong:*circle* wrong:*set*) (list (list wrong:*circle*))
    '(((0 . 5))) '(((0 . "LINE"))) '(((0 . "INSERT") (2 . 5))) '(((0 . 1.5) (-1 . "x"))) '("LAYER" T)
    '("_X" ((-4 . "<OR"))) (list (list (cons -1 wrong:*circle*) '(10 . "x") '(40 . nil)))
    (list wrong:*circle* wrong:*line* 1 2 3 4) '(a b) '("LINE" (0 0) (1 1) "")
    (list "_.PEDIT" wrong:*line* "_J" wrong:*set*) (list "_.HATCH" wrong:*set* 1 2 nil) '((1e308 1e308 1e308) (-1e308 0 0))
    (list wrong:*circle* "" "" "" "") '(2147483647 -2147483648) '("Model" (0 0 0) (1 1 1))
    '("ModelSpace" (0 0 0) 1e-320)))

(foreach name (atoms-family 1)
  (if (and (member (type (eval (read name))) '(SUBR EXRXSUBR)) (not (member name wrong:*spared*))
           (not (wcmatch name "WRONG:*")))
    (foreach arguments wrong:*arguments*
      (setq wrong:*calls* (1+ wrong:*calls*))
      (vl-catch-all-apply (read name) arguments)
      (command))))
(princ "\n") (princ wrong:*calls*) (princ " calls")
