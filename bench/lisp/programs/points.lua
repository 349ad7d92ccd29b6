local function polar(p, a, d) return {p[1] + d * math.cos(a), p[2] + d * math.sin(a), p[3]} end
local function distance(p, q)
  local x, y, z = q[1] - p[1], q[2] - p[2], q[3] - p[3]
  return math.sqrt(x * x + y * y + z * z)
end
local function minus(a, b) return a - b end
local function map(f, a, b)
  local r = {}
  for i = 1, math.min(#a, #b) do r[i] = f(a[i], b[i]) end
  return r
end
function run(n)
  local i, p, s = 0, {0.0, 0.0, 0.0}, 0.0
  while i < n do
    local q = polar(p, i * 0.001, 2.0)
    local d = map(minus, q, p)
    s = s + distance(p, q) + d[1] + d[2] + d[3]
    i = i + 1
  end
  return s
end
print(string.format("%.2f", run(500000)))
