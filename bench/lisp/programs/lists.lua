local l, i = nil, 0
while i < 1000000 do l = {{i, 2 * i}, l}; i = i + 1 end
local sum = 0
local p = l
while p do sum = sum + (p[1][2] - p[1][1] - p[1][1]); p = p[2] end
local short = nil
for k = 0, 99 do short = {{k, 2 * k}, short} end
local function assoc(key, list)
  while list do
    if list[1][1] == key then return list[1] end
    list = list[2]
  end
end
for k = 0, 199999 do sum = sum + assoc(k % 100, short)[2] end
local heads, n = nil, 0
p = l
while p do heads = {p[1][1], heads}; p = p[2]; end
while heads do n = n + 1; heads = heads[2] end
print(sum, n)
