;;; Draws structural axes round a plan: lines through the corners of its outer wall, a numbered bubble at each end,
;;; the wall's size, a note. Run on examples/plan.dxf by "make run".

;; The points of a lightweight polyline.
(defun axes:points (entity / points)
  (foreach group (entget entity)
    (if (= (car group) 10) (setq points (cons (cdr group) points))))
  (reverse points))

;; The closed polyline with the most widely spread points: the outer wall.
(defun axes:outer-wall (/ entity wall)
  (setq entity (entnext))
  (while (and entity (not wall))
    (if (and (= (cdr (assoc 0 (entget entity))) "LWPOLYLINE")
             (= 1 (logand 1 (cdr (assoc 70 (entget entity))))))
      (setq wall entity))
    (setq entity (entnext entity)))
  wall)

;; Different values, ascending.
(defun axes:distinct (values / result)
  (foreach value (vl-sort values '<)
    (if (not (equal value (car result) 1e-6)) (setq result (cons value result))))
  (reverse result))

(defun axes:bubble (x y label / radius)
  (setq radius 300.0)
  (kel_addcircle "ModelSpace" (list x y) radius)
  (kel_addtext "ModelSpace" label (list (- x 90) (- y 125)) 250)
  1)

(defun axes:vertical (x low high label)
  (kel_addline "ModelSpace" (list x (- low 1500)) (list x (+ high 1500)))
  (+ (axes:bubble x (- low 1800) label) (axes:bubble x (+ high 1800) label)))

(defun axes:horizontal (y low high label)
  (kel_addline "ModelSpace" (list (- low 1500) y) (list (+ high 1500) y))
  (+ (axes:bubble (- low 1800) y label) (axes:bubble (+ high 1800) y label)))

(defun axes:draw (/ points xs ys bubbles n note)
  (setq points (axes:points (axes:outer-wall))
        xs (axes:distinct (mapcar 'car points))
        ys (axes:distinct (mapcar 'cadr points))
        bubbles 0
        n 0)
  (foreach x xs
    (setq n (1+ n)
          bubbles (+ bubbles (axes:vertical x (car ys) (last ys) (itoa n)))))
  (setq n 64)
  (foreach y ys
    (setq n (1+ n)
          bubbles (+ bubbles (axes:horizontal y (car xs) (last xs) (chr n)))))
  (kel_addsolid "ModelSpace" (list (car xs) -3300) (list (last xs) -3300) (list (car xs) -3240) (list (last xs) -3240))
  (setq note (kel_addmtext "ModelSpace" (list (car xs) -3500) 9000
                           (strcat "Wymiary w osiach: " (rtos (- (last xs) (car xs)) 2 0) " × "
                                   (rtos (- (last ys) (car ys)) 2 0)
                                   " mm\\POsie narysował program, ściany były w rysunku.")))
  (entmod (list (cons -1 note) (cons 40 220.0)))
  (princ (strcat "Drawn: " (itoa (+ (length xs) (length ys))) " axes, " (itoa bubbles) " bubbles, 1 bar, 1 note.\n"))
  (princ))

(axes:draw)
