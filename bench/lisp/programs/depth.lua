function count(n) if n == 0 then return 0 end return 1 + count(n - 1) end
local sum = 0
for _ = 1, 10 do sum = sum + count(150000) end
print(sum)
