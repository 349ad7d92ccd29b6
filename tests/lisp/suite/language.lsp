;;; The language tested in itself. Run: gcad run examples/tap.lsp tests/lisp/suite/language.lsp

;; ---- values and truth
(tap:is (or nil 5) T "or gives T, never the value")
(tap:is (and 1 2) T "and gives T")
(tap:is (cond ((setq a 7))) 7 "a clause of one form gives its value")
(tap:ok (eq nil '()) "nil is the empty list")
(tap:is (list (princ)) (list (prin1)) "the null symbol equals itself")

;; ---- numbers
(tap:is (/ 7 2) 3 "integers divide to integers")
(tap:is (+ 2147483647 1) -2147483648 "integers wrap")
(tap:near (atan 1 -1) 2.356194490192345 1e-15 "atan knows the quarter")
(tap:is (boole 6 5 3 1) 7 "boole folds from the left")
(tap:is (mapcar 'fix '(3.9 -3.9)) '(3 -3) "fix cuts off")
(foreach n '(0 1 -1 7 100 -2147483648 2147483647)
  (tap:is (atoi (itoa n)) n (strcat "itoa and back: " (itoa n))))
(foreach x '(0.0 1.5 -2.25 1e-5 123456.75 1e15)
  (tap:near (distof (rtos x 2 8) 2) x 1e-8 (strcat "rtos and back: " (rtos x 2 8))))

;; ---- scope
(defun suite:sets () (setq suite:x 2))
(defun suite:has (/ suite:x) (setq suite:x 1) (suite:sets) suite:x)
(tap:is (suite:has) 2 "a callee sets the caller's local")
(tap:is suite:x nil "and nothing outside")
(defun suite:twice (s / s) s)
(tap:is (suite:twice 5) 5 "an argument named again after the slash keeps its value")
(defun suite:nested (/ inner) (defun inner () 3) (inner))
(tap:is (suite:nested) 3 "a function within a function")
(tap:is inner nil "and it is gone outside")
(tap:is (mapcar '(lambda (n / m) (setq m (* n n))) '(1 2 3)) '(1 4 9) "a quoted lambda with a local")

;; ---- lists
(defun suite:iota (n / l) (repeat n (setq l (cons (setq n (1- n)) l))))
(defun suite:random ()
  (setq suite:*seed* (rem (+ (* suite:*seed* 16807.0) 0.0) 2147483647.0)))
(setq suite:*seed* 42.0 suite:*reals* nil)
(repeat 500 (setq suite:*reals* (cons (suite:random) suite:*reals*)))
(setq suite:*sorted* (vl-sort suite:*reals* '<))
(tap:is (length suite:*sorted*) 500 "vl-sort keeps reals")
(tap:ok (apply '<= suite:*sorted*) "vl-sort sorts")
(tap:is (mapcar '(lambda (i) (nth i suite:*reals*)) (vl-sort-i suite:*reals* '<)) suite:*sorted* "vl-sort-i is its order")
(tap:is (reverse (reverse suite:*reals*)) suite:*reals* "reverse twice")
(tap:is (apply 'append (mapcar 'list suite:*reals*)) suite:*reals* "append puts together what list took apart")
(tap:is (apply 'mapcar (cons 'list '((1 2 3) (4 5 6)))) '((1 4) (2 5) (3 6)) "transposition")
(tap:is (read (vl-prin1-to-string '(a "b\"\n" 1 (2.5 . c) nil))) '(a "b\"\n" 1 (2.5 . c) nil) "printed and read")

;; ---- strings
(foreach s '("" "a" "ąłß°" "tab\tand \"quotes\"\\")
  (tap:is (vl-list->string (vl-string->list s)) s "a string is its characters")
  (tap:is (apply 'strcat (mapcar 'chr (vl-string->list s))) s "and they make it")
  (tap:is (strlen s) (length (vl-string->list s)) "strlen counts them"))

;; ---- errors
(tap:fails '/ '(1 0) "divide by zero" "division by zero")
(tap:fails 'car '(5) "bad argument type*" "car of a number")
(tap:fails 'suite:no-such-function nil "no function definition: SUITE:NO-SUCH-FUNCTION" "an unknown function")
(tap:fails 'suite:twice nil "too few arguments" "an argument too few")
(tap:fails 'suite:twice '(1 2) "too many arguments" "an argument too many")
(tap:fails 'exit nil "quit / exit abort" "exit")
(defun suite:deep (n) (if (= n 0) 0 (1+ (suite:deep (1- n)))))
(tap:is (suite:deep 20000) 20000 "recursion twenty thousand deep")

;; Every builtin refuses wrong arguments with an error and nothing worse.
(setq suite:*spared* '("EXIT" "QUIT" "VL-EXIT-WITH-VALUE" "VL-EXIT-WITH-ERROR" "GETPOINT" "STARTAPP" "CAL" "C:CAL"))
(setq suite:*calls* 0)
(foreach name (atoms-family 1)
  (if (and (= (type (eval (read name))) 'SUBR) (not (member name suite:*spared*)) (not (wcmatch name "SUITE*,TAP*,VLR-TRACE*,%*,GR*,VL-FILE*,VL-MKDIR,VL-REG*,COMMAND*,VL-CMDF,SET*,VL-LOAD*,LOAD,AUTOLOAD,ALERT,PR*,WRITE*,TERPRI,REDRAW,TRACE,UNTRACE,GC,VL-BT,ENT*,DEFUN*,*ACAD-DEFUN,VL-PROPAGATE,VL-BB*,GET*,INIT*,READ*,NENT*,SSGET,REPEAT,WHILE")))
    (foreach arguments '(nil (nil) (5) ("x") ((1 . 2)) (-1 -1) ("a" 5) (nil nil nil) ((1 2 3) (1 2 3)) (1.5 "x" nil 7))
      (setq suite:*calls* (1+ suite:*calls*))
      (vl-catch-all-apply (read name) arguments))))
(tap:ok (> suite:*calls* 1500) "every builtin takes wrong arguments calmly")

(tap:done)
