{% load sorvane %}{% autoescape off %}-- This file is made by Sorvane; changes get lost.
-- {{ smartUpdateKey }}
--
--     local info = require("sheet")
--     local imageSheet = graphics.newImageSheet(info.image, info:getSheet())
--     local sprite = display.newImage(imageSheet, info:getFrameIndex("name"))

local SheetInfo = {}

SheetInfo.image = {% filter lua %}{% if settings.textureSubPath %}{{ settings.textureSubPath }}/{% endif %}{{ texture.fullName }}{% endfilter %}

SheetInfo.sheet = {
    frames = {
{% for sprite in allSprites %}        {
            x = {{ sprite.frameRect.x }},
            y = {{ sprite.frameRect.y }},
            width = {{ sprite.frameRect.width }},
            height = {{ sprite.frameRect.height }},
{% if sprite.trimmed %}            sourceX = {{ sprite.sourceRect.x }},
            sourceY = {{ sprite.sourceRect.y }},
            sourceWidth = {{ sprite.untrimmedSize.width }},
            sourceHeight = {{ sprite.untrimmedSize.height }},
{% endif %}        },
{% endfor %}    },
    sheetContentWidth = {{ texture.size.width }},
    sheetContentHeight = {{ texture.size.height }},
}

SheetInfo.frameIndex = {
{% for sprite in allSprites %}    [{% filter lua %}{% if settings.trimSpriteNames %}{{ sprite.trimmedName }}{% else %}{{ sprite.fullName }}{% endif %}{% endfilter %}] = {{ forloop.counter }},
{% endfor %}}

function SheetInfo:getSheet()
    return self.sheet
end

function SheetInfo:getFrameIndex(name)
    return self.frameIndex[name]
end

return SheetInfo{% endautoescape %}
