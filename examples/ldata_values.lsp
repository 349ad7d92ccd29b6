;;; Any LISP value in the drawing: lists, points, dotted pairs, strings, numbers, entities.
;;;
;;; kel_ldata_put and kel_ldata_get keep one text under a key, in a dictionary of the drawing (named by a string)
;;; or on an entity (named by its entity name). These functions turn values into such texts and back:
;;;
;;;   (ldv-put "MY_APP" "scale" '(1 . 50))        -> T, or nil when the drawing refused it
;;;   (ldv-get "MY_APP" "scale" nil)              -> (1 . 50); the last argument when nothing is there
;;;   (ldv-put ent "axis" (list p1 p2))           ; on an entity
;;;   (ldv-delete "MY_APP" "scale")               -> T or nil
;;;   (ldv-list "MY_APP")                         -> ((key . value) ...)
;;;
;;; Reals come back to the last digit (17 significant digits are kept), integers as integers. An entity is kept by
;;; its handle, so it is found again in a saved drawing; one that is gone comes back as nil. Functions, files and
;;; selection sets cannot be kept: ldv-put gives nil and changes nothing.

;; A real with all its digits, and always with a point, so that it is read back as a real.
(defun ldv:real-text (x / zeros text)
  (setq zeros (getvar "DIMZIN"))
  (setvar "DIMZIN" 0)
  (setq text (rtos x 1 16))
  (setvar "DIMZIN" zeros)
  text)

(defun ldv:join (texts / text)
  (setq text "")
  (foreach each (reverse texts) (setq text (strcat text (if (= text "") "" " ") each)))
  text)

;; The text of a list; long lists are walked, only nesting is recursive. nil when an element cannot be kept.
(defun ldv:list-text (value / texts good each)
  (setq good T)
  (while (and good (vl-consp value))
    (if (setq each (ldv:text (car value)))
      (setq texts (cons each texts))
      (setq good nil))
    (setq value (cdr value)))
  (if (and good value)                     ; a dotted tail
    (if (setq each (ldv:text value))
      (setq texts (cons each (cons "." texts)))
      (setq good nil)))
  (if good (strcat "(" (ldv:join texts) ")")))

;; The text of any value, or nil when it is of a kind that cannot be kept.
(defun ldv:text (value / kind)
  (setq kind (type value))
  (cond
    ((null value) "nil")
    ((= kind 'INT) (itoa value))
    ((= kind 'REAL) (ldv:real-text value))
    ((= kind 'STR) (vl-prin1-to-string value))
    ((= kind 'SYM) (vl-symbol-name value))
    ((= kind 'ENAME) (strcat "(LDV:ENTITY \"" (cdr (assoc 5 (entget value))) "\")"))
    ((= kind 'LIST) (ldv:list-text value))))

;; The entity of a handle, nil when there is none or it is erased.
(defun ldv:entity (handle / name)
  (if (and (setq name (handent handle)) (entget name)) name))

;; Entities are found again in what was read.
(defun ldv:revive (value / result)
  (cond
    ((not (vl-consp value)) value)
    ((eq (car value) 'LDV:ENTITY) (ldv:entity (cadr value)))
    (T
     (while (vl-consp value)
       (setq result (cons (ldv:revive (car value)) result)
             value (cdr value)))
     (if value                             ; a dotted tail
       (progn
         (setq value (cons (car result) value)
               result (cdr result))
         (while result
           (setq value (cons (car result) value)
                 result (cdr result)))
         value)
       (reverse result)))))

(defun ldv-put (place key value / text)
  (if (setq text (ldv:text value))
    (if (kel_ldata_put place key text) T)))

(defun ldv-get (place key default / text)
  (if (setq text (kel_ldata_get place key))
    (ldv:revive (read text))
    default))

(defun ldv-delete (place key) (kel_ldata_delete place key))

(defun ldv-list (place)
  (mapcar '(lambda (entry) (cons (car entry) (ldv:revive (read (cadr entry)))))
          (kel_ldata_list place)))

(princ)
