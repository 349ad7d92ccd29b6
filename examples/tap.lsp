;;; Tests of LISP programs, told in TAP (Test Anything Protocol), which CI servers read.
;;; Use: gcad run tap.lsp program.lsp program_test.lsp      documentation: docs/testing-lisp.md

(setq tap:*count* 0 tap:*failed* 0)

;; One line of the report; further lines as comments.
(defun tap:report (good name remarks)
  (setq tap:*count* (1+ tap:*count*))
  (if (not good) (setq tap:*failed* (1+ tap:*failed*)))
  (write-line (strcat (if good "ok " "not ok ") (itoa tap:*count*) (if name (strcat " - " name) "")))
  (foreach remark remarks (write-line (strcat "#   " remark)))
  good)

;; Whether value is not nil.
(defun tap:ok (value name)
  (tap:report (if value T) name nil))

;; Whether two values are equal; numbers within the fuzz.
(defun tap:near (got wanted fuzz name)
  (tap:report (equal got wanted fuzz) name
    (if (not (equal got wanted fuzz))
      (list (strcat "got:    " (vl-prin1-to-string got)) (strcat "wanted: " (vl-prin1-to-string wanted))))))

(defun tap:is (got wanted name)
  (tap:near got wanted 0 name))

;; Whether calling the function with the arguments ends in an error whose message matches the pattern (wcmatch).
(defun tap:fails (function arguments pattern name / result message)
  (setq result (vl-catch-all-apply function arguments))
  (cond
    ((not (vl-catch-all-error-p result))
     (tap:report nil name (list (strcat "no error, but the value " (vl-prin1-to-string result)))))
    ((wcmatch (setq message (vl-catch-all-error-message result)) pattern) (tap:report T name nil))
    ((tap:report nil name (list (strcat "the error was: " message))))))

;; Runs checks that belong together; an error in them is one failure and the next test goes on.
(defun tap:test (name checks / result)
  (setq result (vl-catch-all-apply checks nil))
  (if (vl-catch-all-error-p result)
    (tap:report nil name (list (strcat "error: " (vl-catch-all-error-message result))))
    result))

(defun tap:skip (name reason)
  (tap:report T (strcat name " # SKIP " reason) nil))

;; Ends the report; the exit code is 1 when a check has failed.
(defun tap:done ()
  (write-line (strcat "1.." (itoa tap:*count*)))
  (if (> tap:*failed* 0) (exit 1))
  (princ))
(princ)
