-- Runs a module that stands on standard input and prints what it returns as JSON. What isn't text, a number or a table is
-- left out; tables with a first element are lists.
love = { graphics = { newQuad = function(...) return { ... } end } }

local function json(value)
    if type(value) == "string" then
        return '"' .. value:gsub('[%c"\\]', function(c) return ("\\u%04x"):format(c:byte()) end) .. '"'
    elseif type(value) ~= "table" then
        return tostring(value)
    end
    local parts = {}
    for key, element in pairs(value) do
        if type(element) ~= "function" then
            parts[#parts + 1] = (value[1] and "" or json(key) .. ":") .. json(element)
        end
    end
    local text = table.concat(parts, ",")
    return value[1] and "[" .. text .. "]" or "{" .. text .. "}"
end

local module = assert(load(io.read("a"), "sheet", "t"))()
if module.getSheet then
    assert(module:getSheet() == module.sheet)
    for name, index in pairs(module.frameIndex) do assert(module:getFrameIndex(name) == index) end
end
print(json(module))
