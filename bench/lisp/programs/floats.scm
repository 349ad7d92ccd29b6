(define (run n)
  (let loop ((i 0) (s 0.0) (x 1.5))
    (if (< i n) (loop (+ i 1) (+ s (* x 0.5) (/ 1.0 (+ x 1.0))) (+ x 0.25)) s)))
(display (run 5000000)) (newline)
