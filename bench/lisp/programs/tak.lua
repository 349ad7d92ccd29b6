function tak(x, y, z)
  if not (y < x) then return z end
  return tak(tak(x - 1, y, z), tak(y - 1, z, x), tak(z - 1, x, y))
end
local r
for _ = 1, 3 do r = tak(20, 14, 6) end
print(r)
