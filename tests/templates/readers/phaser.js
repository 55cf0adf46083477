// Prints what Phaser makes of a multi atlas: its own parser and frames, without the browser around them.
// The package names the whole engine alone as its entry: hence the paths.
const source = process.env.NODE_PATH + '/phaser/src/textures/';
const parse = require(source + 'parsers/JSONArray.js');
const Frame = require(source + 'Frame.js');

const data = JSON.parse(require('fs').readFileSync(0, 'utf8'));
const { image, size } = data.textures[0];
const frames = new Map();
const texture = {
    source: [{ width: size.w, height: size.h }],
    customData: {},
    add(name, index, x, y, width, height) {
        const frame = frames.has(name) ? null : new Frame(texture, name, index, x, y, width, height);
        frames.set(name, frame);
        return frame;
    },
};
parse(texture, 0, data);
frames.delete('__BASE');

const sprites = {};
for (const [name, f] of frames) {
    // What is cut out of the texture, by its coordinates, whose second one counts from the bottom.
    const x = [f.u0 * size.w, f.u1 * size.w], y = [(1 - f.v0) * size.h, (1 - f.v1) * size.h];
    const area = [Math.min(...x), Math.min(...y), Math.abs(x[0] - x[1]), Math.abs(y[0] - y[1])].map(Math.round);
    sprites[name] = { area, rotated: f.rotated, trimmed: f.trimmed, kept: [f.x, f.y, f.width, f.height],
                      size: [f.cutWidth, f.cutHeight], source: [f.realWidth, f.realHeight] };
}
console.log(JSON.stringify({ image, size: [size.w, size.h], sprites }));
