local n, i, s = 0, 0, nil
for _ = 1, 200 do
  s = ""
  for _ = 1, 1000 do s = s .. "ab" end
  n = n + #s
end
while i < 300000 do
  s = "item-" .. tostring(i)
  if s:sub(6, 6) == "7" then n = n + 1 end
  i = i + 1
end
print(n)
