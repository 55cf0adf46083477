// Prints what the runtime of Spine makes of an atlas.
const text = require('fs').readFileSync(0, 'utf8');
import(process.env.NODE_PATH + '/@esotericsoftware/spine-core/dist/TextureAtlas.js').then(({ TextureAtlas }) => {
    const { pages, regions } = new TextureAtlas(text);
    const sprites = {};
    for (const r of regions) {
        const area = [r.u, r.v, r.u2 - r.u, r.v2 - r.v].map((part, i) => Math.round(part * r.page[i % 2 ? 'height' : 'width']));
        sprites[r.name] = { area, degrees: r.degrees, index: r.index, size: [r.width, r.height],
                            offset: [r.offsetX, r.offsetY], source: [r.originalWidth, r.originalHeight] };
    }
    const page = ({ name, width, height, minFilter, magFilter, pma }) => ({ name, size: [width, height], filter: [minFilter, magFilter], pma });
    console.log(JSON.stringify({ pages: pages.map(page), sprites }));
});
