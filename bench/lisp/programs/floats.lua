function run(n)
  local i, s, x = 0, 0.0, 1.5
  while i < n do
    s = s + x * 0.5 + 1.0 / (x + 1.0)
    x = x + 0.25
    i = i + 1
  end
  return s
end
print(string.format("%.3f", run(5000000)))
