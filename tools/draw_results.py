#!/usr/bin/python3
"""Draws a PNG of a solved model from its contour file (Tarn+Vexo_AverageStrs.txt).

    draw_results.py run/midship/Tarn+Vexo_AverageStrs.txt --out midship.png --unit 1e6 --label MPa

Shells and the section walls of beams are drawn in their deformed shape, coloured by a stress of the corners, linear
over each wall, in bands between round numbers. Parallel projection, hidden surfaces removed pixel by pixel.
Needs python3-numpy and python3-matplotlib. The file is described in docs/formats/contour-file.md.
"""
import argparse
import math
import os
import sys

try:
    import matplotlib

    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    import numpy as np
    from matplotlib.colors import BoundaryNorm
    from matplotlib.ticker import MaxNLocator
except ImportError as missing:
    sys.exit(f"draw_results.py: error: {missing}, in {sys.executable}\n"
             "  to do:    apt-get install python3-numpy python3-matplotlib, and start it with /usr/bin/python3")

FIELDS = ["SX", "SY", "SZ", "TXY", "TXZ", "TYZ", "SE"]
OVERSAMPLING = 2          # pixels per image pixel in each direction, for smooth outlines
LIGHT = np.array([-0.35, -0.55, 0.76])  # in the axes of the view: right, down the line of sight, up
AMBIENT = 0.76            # brightness of a wall that looks away from the light
EDGE_WIDTH = 0.4 * OVERSAMPLING
EDGE_DARKNESS = 0.7       # brightness of an element's edge
MINIMUM_EDGE_SPACING = 9  # image pixels: finer meshes are drawn without their edges
SECTION_DEPTH = 0.002     # beam walls are drawn this share of the extent farther away, so that plating on them is whole
LEGEND_WIDTH = 105        # image pixels


class Walls:
    """Polygons of three or four corners with their positions, translations and a value at each corner."""

    def __init__(self):
        self.positions = []     # per polygon [corners][3]
        self.translations = []
        self.values = []        # per polygon [corners][faces]
        self.of_beams = []      # per polygon

    def add(self, nodes, translations, corners, values, of_beam):
        self.of_beams.append(of_beam)
        self.positions.append(nodes[corners])
        self.translations.append(translations[corners])
        self.values.append(values)


class ContourFile:
    """The file as a list of lines that is read from front to back."""

    def __init__(self, path):
        try:
            with open(path, encoding="ascii") as file:
                self.lines = file.read().splitlines()
        except OSError as error:
            sys.exit(f"{path}: error: {error.strerror}\n"
                     "  expected: Tarn+Vexo_AverageStrs.txt, which tarnvexo writes where it is started")
        except UnicodeDecodeError:
            sys.exit(f"{path}: error: this is no contour file, it holds more than ASCII\n"
                     "  expected: Tarn+Vexo_AverageStrs.txt of a run")
        self.path = path
        self.next = 0
        if not self.lines or not self.lines[0].startswith("NPOIN="):
            sys.exit(f"{path}: error: this is no contour file, it does not begin with NPOIN=\n"
                     "  expected: Tarn+Vexo_AverageStrs.txt of a run")

    def fail(self, expected):
        found = self.lines[self.next - 1]
        found = found if len(found) <= 60 else found[:60] + "..."
        sys.exit(f"{self.path}:{self.next}: error: found \"{found}\"\n  expected: {expected}")

    def line(self):
        if self.next == len(self.lines):
            sys.exit(f"{self.path}: error: the file ends early, after line {self.next}\n"
                     "  to do:    run tarnvexo again and look at its messages (disk full?)")
        self.next += 1
        return self.lines[self.next - 1]

    def count(self, key):
        name, _, number = self.line().partition("=")
        if name != key or not number.isdigit():
            self.fail(f"{key}= and a number")
        return int(number)

    def numbers(self, rows, columns):
        table = []
        for _ in range(rows):
            try:
                table.append([float(value) for value in self.line().split(",")])
            except ValueError:
                table.append([])
            if len(table[-1]) != columns:
                self.fail(f"{columns} numbers with commas between")
        return np.array(table).reshape(rows, columns)

    def nodes(self):
        count = self.count("NPOIN")
        return self.numbers(count, 3), self.numbers(count, 6)[:, :3]

    def corners(self, number, node_count):
        words = self.line().split(",")
        if len(words) != number or not all(word.isdigit() and int(word) < node_count for word in words):
            self.fail(f"{number} node numbers from 0 to {node_count - 1}")
        return [int(word) for word in words]

    def walls(self, key, nodes, translations, field, walls):
        corner_count = 3 if key == "NELEM_S_3ND" else 4
        for _ in range(self.count(key)):
            corners = self.corners(corner_count, len(nodes))
            stresses = self.numbers(2 * corner_count, len(FIELDS))[:, field]
            walls.add(nodes, translations, corners, stresses.reshape(-1, 2), key == "NELEM")


def read_walls(path, field):
    """All walls of the model and of its beams, and the largest extent and translation of the model's nodes."""
    file = ContourFile(path)
    walls = Walls()
    nodes, translations = file.nodes()
    file.walls("NELEM_S_4ND", nodes, translations, field, walls)
    file.walls("NELEM_S_3ND", nodes, translations, field, walls)
    for _ in range(file.count("NELEM_B")):
        for _ in range(3):  # BEI, SND, END
            file.line()
        section_nodes, section_translations = file.nodes()
        file.walls("NELEM", section_nodes, section_translations, field, walls)
    if not walls.positions:
        sys.exit(f"{path}: error: the model has no shells and no beams to draw")
    if not all(np.isfinite(table).all() for table in walls.positions + walls.translations + walls.values):
        sys.exit(f"{path}: error: coordinates, displacements or stresses are not finite, so there is nothing to draw\n"
                 "  to do:    look at the messages of the run: is a part held by nothing, an element without area?")
    extent = float(np.max(np.ptp(nodes, axis=0)))
    translation = float(np.max(np.abs(translations)))
    return walls, extent, translation


def corner_values(values, faces):
    """One value per corner from those of its two faces: the face of larger magnitude, or a named one."""
    if faces == "positive":
        return values[:, 0]
    if faces == "negative":
        return values[:, 1]
    larger = np.abs(values).argmax(axis=1)
    return values[np.arange(len(values)), larger]


def view_axes(azimuth, elevation):
    """Rows: right, away from the viewer, up. Azimuth from x towards y, elevation above the x-y plane, degrees."""
    a, e = math.radians(azimuth), math.radians(elevation)
    towards_viewer = np.array([math.cos(e) * math.cos(a), math.cos(e) * math.sin(a), math.sin(e)])
    right = np.array([-math.sin(a), math.cos(a), 0.0])
    return np.array([right, -towards_viewer, np.cross(towards_viewer, right)])


class Canvas:
    """A picture with the depth, value and brightness of what is nearest at each pixel."""

    def __init__(self, width, height):
        self.depth = np.full((height, width), np.inf)
        self.value = np.full((height, width), np.nan)
        self.brightness = np.ones((height, width))

    def triangle(self, points, depths, values, brightness, edge_width):
        """points [3][2] in pixels; the edge of the element runs between the first two."""
        height, width = self.depth.shape
        low = np.maximum(np.floor(points.min(axis=0)).astype(int), 0)
        high = np.minimum(np.ceil(points.max(axis=0)).astype(int) + 1, [width, height])
        if (low >= high).any():
            return
        (x1, y1), (x2, y2), (x3, y3) = points
        double_area = (x2 - x1) * (y3 - y1) - (x3 - x1) * (y2 - y1)
        if abs(double_area) < 1e-9:
            return
        x = np.arange(low[0], high[0]) + 0.5
        y = (np.arange(low[1], high[1]) + 0.5)[:, None]
        # Area coordinates of the pixels.
        L3 = ((x - x1) * (y2 - y1) - (y - y1) * (x2 - x1)) / -double_area
        L2 = ((x - x1) * (y3 - y1) - (y - y1) * (x3 - x1)) / double_area
        L1 = 1.0 - L2 - L3
        window = (slice(low[1], high[1]), slice(low[0], high[0]))
        depth = L1 * depths[0] + L2 * depths[1] + L3 * depths[2]
        seen = (L1 >= -1e-6) & (L2 >= -1e-6) & (L3 >= -1e-6) & (depth < self.depth[window])
        if not seen.any():
            return
        shade = np.full(seen.shape, brightness)
        if edge_width > 0:
            distance_from_edge = L3 * abs(double_area) / (math.hypot(x2 - x1, y2 - y1) + 1e-9)
            shade[distance_from_edge < edge_width] *= EDGE_DARKNESS
        self.depth[window][seen] = depth[seen]
        self.value[window][seen] = (L1 * values[0] + L2 * values[1] + L3 * values[2])[seen]
        self.brightness[window][seen] = shade[seen]


def draw_walls(polygons, values, of_beams, axes, size, margin):
    """The picture of all polygons, as large as it fits into size less the margins (left, right, top, bottom)."""
    projected = [polygon @ axes.T for polygon in polygons]
    points = np.concatenate(projected)
    low, high = points.min(axis=0), points.max(axis=0)
    width, height = (OVERSAMPLING * length for length in size)
    left, right, top, bottom = (OVERSAMPLING * length for length in margin)
    scale = min((width - left - right) / (high[0] - low[0] + 1e-30), (height - top - bottom) / (high[2] - low[2] + 1e-30))
    centre = (low + high) / 2
    middle = np.array([(left + width - right) / 2, (top + height - bottom) / 2])

    # Edges of the model's shells, or of the beam walls when there are no shells, unless they stand too close.
    edged = [not of_beam for of_beam in of_beams] if not all(of_beams) else of_beams
    lengths = [np.linalg.norm(p[1] - p[0]) for p, drawn in zip(projected, edged) if drawn]
    dense = np.median(lengths) * scale / OVERSAMPLING < MINIMUM_EDGE_SPACING
    farther = SECTION_DEPTH * (high - low).max()

    canvas = Canvas(width, height)
    light = LIGHT / np.linalg.norm(LIGHT)
    for polygon, corner, of_beam, has_edges in zip(projected, values, of_beams, edged):
        pixels = middle + (polygon[:, [0, 2]] - centre[[0, 2]]) * [scale, -scale]
        if len(polygon) == 4:
            normal = np.cross(polygon[2] - polygon[0], polygon[3] - polygon[1])
        else:
            normal = np.cross(polygon[1] - polygon[0], polygon[2] - polygon[0])
        normal = normal / (np.linalg.norm(normal) + 1e-30)
        if normal[1] > 0:  # the side that is seen
            normal = -normal
        brightness = AMBIENT + (1 - AMBIENT) * max(0.0, float(normal @ light))
        edge_width = EDGE_WIDTH if has_edges and not dense else 0.0
        depth = polygon[:, 1] + (farther if of_beam else 0.0)
        # One triangle per edge, its third corner at the middle.
        middle_point, middle_depth, middle_value = pixels.mean(axis=0), depth.mean(), corner.mean()
        for i in range(len(polygon)):
            j = (i + 1) % len(polygon)
            canvas.triangle(np.array([pixels[i], pixels[j], middle_point]),
                            (depth[i], depth[j], middle_depth), (corner[i], corner[j], middle_value),
                            brightness, edge_width)
    return canvas


def legend_levels(values, largest, bands):
    """Round numbers from the smallest value, or 0, to the largest or to a limit that few corners exceed."""
    low, high = float(values.min()), float(values.max())
    if low > 0 or low > -1e-9 * high:
        low = 0.0
    if largest is not None:
        high = largest
    else:
        most = float(np.percentile(values, 99.7))
        if high > 1.4 * most > 0:  # a few peaks, at supports for example, would hide all else
            high = most
    levels = MaxNLocator(nbins=bands, steps=[1, 2, 2.5, 5, 10]).tick_values(low, high)
    return levels[levels <= high * (1 + 1e-9)] if largest is not None else levels


def write_picture(canvas, levels, magnification, arguments):
    seen = canvas.value[~np.isnan(canvas.value)]
    if seen.size == 0:
        sys.exit(f"{arguments.file}: error: every wall is seen from its edge\n  to do:    choose another --view")
    beyond = {(False, False): "neither", (True, False): "min", (False, True): "max", (True, True): "both"}[
        bool(seen.min() < levels[0]), bool(seen.max() > levels[-1])]
    colours = plt.get_cmap(arguments.colours)
    norm = BoundaryNorm(levels, colours.N, extend=beyond)
    image = colours(norm(np.nan_to_num(canvas.value)))[:, :, :3] * canvas.brightness[:, :, None]
    image[np.isnan(canvas.value)] = 1.0
    height, width = (length // OVERSAMPLING for length in canvas.value.shape)
    image = image.reshape(height, OVERSAMPLING, width, OVERSAMPLING, 3).mean(axis=(1, 3))

    figure = plt.figure(figsize=(width / 100, height / 100), dpi=100)
    figure.figimage(image, zorder=-1)
    # Legend at the right edge, with arrow ends where values lie beyond it.
    left = 1 - LEGEND_WIDTH / width
    bar = figure.colorbar(plt.cm.ScalarMappable(norm, colours), cax=figure.add_axes([left, 0.16, 20 / width, 0.68]),
                          ticks=levels, spacing="proportional")
    bar.ax.tick_params(labelsize=12, length=0)
    bar.outline.set_visible(False)
    bar.ax.set_yticklabels([f"{level:g}" for level in levels])
    title = arguments.field + (f", {arguments.label}" if arguments.label else "")
    figure.text(left, 0.9, title, fontsize=13)
    shape = f"deformed\n×{magnification:.3g}" if magnification else "undeformed"
    figure.text(left, 0.11, shape, fontsize=10, verticalalignment="top")
    try:
        figure.savefig(arguments.out, dpi=100, pil_kwargs={"optimize": True})
    except OSError as error:
        sys.exit(f"{arguments.out}: error: {error.strerror}\n  expected: a file that can be written")


def picture_name(text):
    folder = os.path.dirname(text) or "."
    if not text.endswith(".png"):
        raise argparse.ArgumentTypeError(f"\"{text}\": expected a name that ends in .png")
    if not os.path.isdir(folder):
        raise argparse.ArgumentTypeError(f"\"{text}\": there is no folder \"{folder}\"")
    return text


def two_angles(text):
    try:
        azimuth, elevation = (float(angle) for angle in text.split(","))
    except ValueError:
        raise argparse.ArgumentTypeError(f"\"{text}\": expected two angles, for example -55,28")
    return azimuth, elevation


def picture_size(text):
    words = text.split(",")
    if len(words) != 2 or not all(word.isdigit() and 200 <= int(word) <= 10000 for word in words):
        raise argparse.ArgumentTypeError(f"\"{text}\": expected two lengths from 200 to 10000, for example 1400,900")
    return [int(word) for word in words]


def positive(text):
    try:
        number = float(text)
    except ValueError:
        number = 0.0
    if not 0 < number < math.inf:
        raise argparse.ArgumentTypeError(f"\"{text}\": expected a number above 0")
    return number


def parse_arguments():
    parser = argparse.ArgumentParser(description="Draws a PNG of a solved model from its contour file.")
    parser.add_argument("file", help="Tarn+Vexo_AverageStrs.txt of a run")
    parser.add_argument("--out", default="results.png", type=picture_name, help="PNG to write (results.png)")
    parser.add_argument("--field", default="SE", choices=FIELDS, help="stress component; SE is the equivalent stress")
    parser.add_argument("--faces", default="max", choices=["max", "positive", "negative"],
                        help="face of larger magnitude, or one face of every wall")
    parser.add_argument("--view", default="-55,28", type=two_angles, help="azimuth,elevation of the viewer in degrees")
    parser.add_argument("--scale", type=float, default=0.05,
                        help="largest translation as a share of the largest extent; 0 draws the undeformed shape")
    parser.add_argument("--size", default="1400,900", type=picture_size, help="width,height in pixels")
    parser.add_argument("--unit", type=positive, default=1.0, help="stresses are divided by this before they are drawn")
    parser.add_argument("--label", default="", help="name of that unit for the legend")
    parser.add_argument("--limit", type=positive, help="largest number of the legend; default: what few corners exceed")
    parser.add_argument("--bands", type=int, default=10, choices=range(2, 51), metavar="2..50", help="about this many colours")
    parser.add_argument("--colours", default="viridis", choices=plt.colormaps(), metavar="NAME",
                        help="matplotlib colour map")
    # "--view -55,28": a value that begins with a minus sign is no option.
    words = sys.argv[1:]
    for i in range(len(words) - 1):
        if words[i] == "--view":
            words[i:i + 2] = ["--view=" + words[i + 1], ""]
    return parser.parse_args([word for word in words if word])


def main():
    arguments = parse_arguments()
    walls, extent, translation = read_walls(arguments.file, FIELDS.index(arguments.field))
    magnification = arguments.scale * extent / translation if translation > 0 else 0.0
    polygons = [p + magnification * d for p, d in zip(walls.positions, walls.translations)]
    values = [corner_values(v, arguments.faces) / arguments.unit for v in walls.values]

    levels = legend_levels(np.concatenate(values), arguments.limit, arguments.bands)
    canvas = draw_walls(polygons, values, walls.of_beams, view_axes(*arguments.view), arguments.size,
                        margin=(20, LEGEND_WIDTH + 30, 20, 20))
    write_picture(canvas, levels, magnification, arguments)
    largest = max(float(v.max()) for v in values)
    print(f"{arguments.out}: {len(polygons)} walls, displacements x {magnification:g}, "
          f"largest {arguments.field} {largest:g} {arguments.label}".rstrip())


if __name__ == "__main__":
    main()
