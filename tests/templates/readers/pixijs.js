// Prints what PixiJS makes of a sprite sheet. Loading the engine asks for a browser's name and nothing more.
globalThis.navigator ??= { userAgent: '' };

const data = JSON.parse(require('fs').readFileSync(0, 'utf8'));
const { image, size } = data.meta;
const rectangle = (r) => r ? [r.x, r.y, r.width, r.height] : null;
import(process.env.NODE_PATH + '/pixi.js/lib/index.mjs').then(async ({ Spritesheet, Texture, TextureSource }) => {
    const source = new TextureSource({ width: size.w, height: size.h });
    const sheet = new Spritesheet(new Texture({ source }), data);
    const textures = await sheet.parse();
    const sprites = {};
    for (const [name, t] of Object.entries(textures))
        sprites[name] = { frame: rectangle(t.frame), rotate: t.rotate, trim: rectangle(t.trim),
                          source: [t.orig.width, t.orig.height] };
    const animations = {};
    for (const [name, frames] of Object.entries(sheet.animations))
        animations[name] = frames.map((texture) => texture.label);
    console.log(JSON.stringify({ image, size: [size.w, size.h], sprites, animations }));
});
