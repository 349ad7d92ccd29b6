local l, seed = {}, 12345
for i = 1, 1000000 do
  seed = (seed * 421 + 54773) % 259200
  l[i] = seed + 0.5
end
table.sort(l, function(a, b) return a < b end)
print(l[1], #l)
