// Writes the world's land as a single-colour SVG silhouette to standard output.
// Run through ./generate-world-map, which turns it into the image the client loads.

import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { geoMercator, geoPath } from 'd3-geo';
import { feature } from 'topojson-client';

// The window is 360 wide; twice that is one image pixel per screen pixel at 200 %, and every
// pixel beyond it would only cost memory and start-up time. The height is even so that the map
// sits on whole pixels when it is centred at 100 %.
const WIDTH = 720;
const HEIGHT = 468;

// Keeps the antialiased coast from being cut off at the image's edge.
const MARGIN = 1;

// Dark enough that the grey hint, which lies across it, keeps a contrast of 4.5 : 1.
const COLOUR = '#B8BAD2';

// Cuts the map through the Bering Strait: at 180 degrees the eastern tip of Asia would reappear
// beside Alaska.
const CENTRAL_MERIDIAN = 11;

// Antarctica fills the lower third of a Mercator map and says nothing about where servers are.
const SOUTHERN_LIMIT = -58;

// Islands of fewer pixels look like dirt on the screen once they are drawn at one tenth opacity.
const SMALLEST_ISLAND = 4;

const atlas = createRequire(import.meta.url).resolve('world-atlas/land-110m.json');
const topology = JSON.parse(readFileSync(atlas, 'utf8'));
const land = feature(topology, topology.objects.land);

const polygons = (land.features ?? [land])
    .map((item) => item.geometry)
    .flatMap((shape) => (shape.type === 'Polygon' ? [shape.coordinates] : shape.coordinates))
    .filter(([outline]) => outline.some(([, latitude]) => latitude > SOUTHERN_LIMIT));

// Mercator, because a flatter projection would leave little more than the strip which the
// connection switch covers.
const projection = geoMercator()
    .rotate([-CENTRAL_MERIDIAN, 0])
    .precision(0.1)
    .scale((WIDTH - 2 * MARGIN) / (2 * Math.PI))
    .translate([WIDTH / 2, 0]);

// One decimal hides differences in the last bits of floating-point results between machines.
const path = geoPath(projection).digits(1);

const shown = {
    type: 'MultiPolygon',
    coordinates: polygons.filter(
        (coordinates) => path.area({ type: 'Polygon', coordinates }) >= SMALLEST_ISLAND,
    ),
};

const [[, top], [, bottom]] = path.bounds(shown);
if (bottom - top > HEIGHT - 2 * MARGIN) {
    throw new Error(`the land is ${Math.ceil(bottom - top)} px high and does not fit the image`);
}
projection.translate([WIDTH / 2, (HEIGHT - top - bottom) / 2]);

process.stdout.write(
    `<svg xmlns="http://www.w3.org/2000/svg" width="${WIDTH}" height="${HEIGHT}"` +
        ` viewBox="0 0 ${WIDTH} ${HEIGHT}"><path fill="${COLOUR}" d="${path(shown)}"/></svg>\n`,
);
