(setq l nil seed 12345)
(repeat 1000000
  (setq seed (rem (+ (* seed 421) 54773) 259200))
  (setq l (cons (+ seed 0.5) l)))
(setq s (vl-sort l '(lambda (a b) (< a b))))
(princ (list (car s) (length s))) (terpri)
