(define (count n) (if (= n 0) 0 (+ 1 (count (- n 1)))))
(define sum 0)
(do ((i 0 (+ i 1))) ((= i 10)) (set! sum (+ sum (count 150000))))
(display sum) (newline)
