{% load sorvane %}{% autoescape off %}-- This file is made by Sorvane; changes get lost.
-- {{ smartUpdateKey }}
--
--     local sheet = require("sheet")
--     local image = love.graphics.newImage(sheet.image)
--     local frame = sheet.frames["name"]
--     love.graphics.draw(image, frame.quad, x, y, 0, 1, 1, -frame.offsetX, -frame.offsetY)

local sheet = {
    image = {% filter lua %}{% if settings.textureSubPath %}{{ settings.textureSubPath }}/{% endif %}{{ texture.fullName }}{% endfilter %},
    width = {{ texture.size.width }},
    height = {{ texture.size.height }},
    frames = {},
    animations = {},
}

local function add(name, x, y, width, height, offsetX, offsetY, sourceWidth, sourceHeight)
    sheet.frames[name] = {
        quad = love.graphics.newQuad(x, y, width, height, sheet.width, sheet.height),
        width = width,
        height = height,
        offsetX = offsetX,
        offsetY = offsetY,
        sourceWidth = sourceWidth,
        sourceHeight = sourceHeight,
    }
end

{% for sprite in allSprites %}add({% filter lua %}{% if settings.trimSpriteNames %}{{ sprite.trimmedName }}{% else %}{{ sprite.fullName }}{% endif %}{% endfilter %}, {{ sprite.frameRect.x }}, {{ sprite.frameRect.y }}, {{ sprite.frameRect.width }}, {{ sprite.frameRect.height }}, {{ sprite.sourceRect.x }}, {{ sprite.sourceRect.y }}, {{ sprite.untrimmedSize.width }}, {{ sprite.untrimmedSize.height }})
{% endfor %}
-- Names of the frames, in the order of the numbers at their ends.
{% for animation in allSprites|numbered|animations %}sheet.animations[{{ animation.name|lua }}] = {
{% for sprite in animation.frames %}    {% filter lua %}{% if settings.trimSpriteNames %}{{ sprite.trimmedName }}{% else %}{{ sprite.fullName }}{% endif %}{% endfilter %},
{% endfor %}}
{% endfor %}
return sheet{% endautoescape %}
