(defun count (n) (if (= n 0) 0 (1+ (count (1- n)))))
(setq sum 0)
(repeat 10 (setq sum (+ sum (count 150000))))
(princ sum) (terpri)
