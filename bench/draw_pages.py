#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws many kinds of pages in a browser and takes pictures of them, with the words that they
contain: a set to measure names with, other than any that the recogniser was tuned on.

usage: draw_pages.py FOLDER [COUNT [SEED]]

Needs Chromium, and ImageMagick for the JPEG pictures. Everything on the pages is made here; the
same seed gives the same pages. FOLDER receives the pictures and truth.json.
"""

import html
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

WORDS = """account address airport album analysis anchor annual answer archive article artist
audience autumn balance banner battery bicycle board bottle branch bridge budget builder button
calendar camera candle canvas capital carbon castle category channel chapter charge checkout cheese
citizen climate clinic coffee collection comment community compare compass complete concert condition
configure connect contact content contract country course creative customer dashboard database
deadline debate decision default delivery department deploy design desktop detail device diagram
dinner direct discount discuss display distance document dolphin domain download drawing driver
editor election electric elephant employee energy engine entry equipment error estimate evening
event example exchange exercise expense export factory failed family farmer fashion feature feedback
festival fiction filter finance finger flight folder forecast forest formula forward freedom
friend furniture future gallery garden general giraffe glacier global graphics grocery group growth
guitar harbor harvest healthy heating helper history holiday horizon hospital hotel humble husband
iceberg identity import income index inform input insert install instrument insurance interest
internet interview invoice island jacket journal journey judge kernel keyboard kitchen knowledge
ladder language laptop launch layout leader lecture legend lesson letter library license lightning
limited location logistics machine magazine manager manual margin market material meadow measure
medical meeting member memory mention message method migration mineral minister mirror missing
mobile model module monitor morning mountain movement museum music narrow nation nature negative
network nickel normal number object ocean office online opening operator option orange order
organic output overview package painting palace parallel parking partner passage password patient
pattern payment pencil penguin people perfect permission person phone physics picture planet plastic
platform player playlist pocket podcast policy popular portrait position postcard potato practice
prepare present pressure primary printer privacy problem process product profile program project
property protocol province publish purchase pyramid quality quarter question queue radio railway
random reader recent recipe record refresh region release reminder remote repair report request
research reserve resource response restaurant result review reward river robot rocket sailor salary
sample satellite schedule science season second secret section security senior series server service
session setting shadow share shipping signal silver simple sketch soccer social software solution
source special spring square stadium standard station status storage story strategy street student
studio subject summary summer support surface survey switch symbol system table tablet target teacher
team template terminal theater theory ticket timeline tomorrow topic tourist tractor traffic trainer
transfer travel triangle tunnel update upgrade upload user vacation valley value vehicle version
video village vintage visitor vitamin volume voucher warning water weather website wedding welcome
window winter wireless wizard worker workshop yellow yesterday zebra""".split()
SMALL = "the of and to in for with on at by a is from as".split()
NAMES = """Anna Boris Clara David Elena Felix Greta Hannah Igor Julia Kevin Laura Marco Nadia Oscar Paula
Quentin Rosa Simon Teresa Victor Wanda""".split()
FONTS = ["DejaVu Sans", "Liberation Sans", "Noto Sans", "DejaVu Serif", "Liberation Serif", "Nimbus Sans",
         "C059", "DejaVu Sans, Liberation Sans Narrow"]
MONOSPACED = ["DejaVu Sans Mono", "Liberation Mono", "Fira Code", "Nimbus Mono PS"]
LIGHT = [("#fff", "#222", "#f3f3f5", "#1a73e8"), ("#fafafa", "#444", "#e8e8e8", "#c2185b"),
         ("#fdf6e3", "#586e75", "#eee8d5", "#268bd2"), ("#fff", "#777", "#f7f7f7", "#2e7d32")]
DARK = [("#1e1e1e", "#d4d4d4", "#2d2d30", "#569cd6"), ("#282a36", "#f8f8f2", "#44475a", "#bd93f9"),
        ("#000", "#bbb", "#222", "#4caf50"), ("#2b303b", "#8f9aab", "#343d46", "#ebcb8b")]
ICONS = ["<circle cx='8' cy='8' r='6'/>", "<path d='M2 4h12M2 8h12M2 12h12'/>",
         "<circle cx='7' cy='7' r='4.5'/><path d='M10.5 10.5L15 15'/>", "<path d='M3 8l4 4 6-9'/>",
         "<path d='M2 7l6-5 6 5v7H2z'/>", "<path d='M3 3l10 10M13 3L3 13'/>", "<path d='M5 2l6 6-6 6'/>",
         "<rect x='2' y='3' width='12' height='10' rx='2'/><path d='M2 5l6 4 6-4'/>",
         "<path d='M8 1l2 5 5 .5-4 3.5 1.500 5L8 12l-4.500 3 1.500-5-4-3.500 5-.5z'/>",
         "<path d='M2 4h4l2 2h6v7H2z'/>", "<circle cx='8' cy='5' r='3'/><path d='M2 15c0-8 12-8 12 0'/>"]


class Page:
    """Collects the text written on a page."""

    def __init__(self, rng):
        self.rng = rng
        self.dark = rng.random() < 0.5
        self.ground, self.ink, self.card, self.accent = rng.choice(DARK if self.dark else LIGHT)
        self.words = set()
        self.headline = []

    def text(self, text, headline=False):
        for token in re.findall(r"\S+", text):
            pieces = re.findall(r"\w+", token)
            self.words.update(p.lower() for p in pieces)
            for piece in pieces:
                self.words.update(
                    p.lower() for p in re.sub(r"([a-z])([A-Z])", r"\1 \2", piece).split())
                self.words.update(piece.lower().split("_"))
        if headline:
            self.headline += re.findall(r"\w+", text.lower())
        return html.escape(text)

    def phrase(self, low, high, headline=False):
        words = self.rng.sample(WORDS, self.rng.randint(low, high))
        words[0] = words[0].capitalize()
        if self.rng.random() < 0.3:
            words = [w.capitalize() for w in words]
        return self.text(" ".join(words), headline)

    def sentence(self):
        words = []
        for _ in range(self.rng.randint(6, 16)):
            words.append(self.rng.choice(SMALL if self.rng.random() < 0.3 else WORDS))
        words[0] = words[0].capitalize()
        return self.text(" ".join(words) + self.rng.choice([".", ".", "!", "?"]))

    def paragraph(self, low=2, high=5):
        return " ".join(self.sentence() for _ in range(self.rng.randint(low, high)))

    def name(self):
        return self.text(self.rng.choice(NAMES))

    def icon(self, size=None):
        size = size or self.rng.choice([12, 14, 16, 18, 20, 24])
        turn = self.rng.choice([0, 0, 0, 45, 90, 30])
        colour = self.rng.choice([self.ink, self.accent])
        return (f"<svg width={size} height={size} viewBox='0 0 16 16' fill=none stroke='{colour}' "
                f"stroke-width=1.6 style='vertical-align:middle;margin:0 {self.rng.randint(2, 8)}px;"
                f"transform:rotate({turn}deg)'>{self.rng.choice(ICONS)}</svg>")

    def photo(self, width, height):
        """A texture of our own: coloured turbulence without any text."""
        seed = self.rng.randint(1, 999)
        kind = self.rng.choice(["turbulence", "fractalNoise"])
        base = self.rng.choice([0.008, 0.02, 0.05, 0.12])
        return (f"<svg width={width} height={height}><filter id=n{seed}><feTurbulence type={kind} "
                f"baseFrequency={base} numOctaves=5 seed={seed} /><feColorMatrix values='1.6 0 0 0 -.3 "
                f"0 1.5 0 0 -.3 0 0 1.4 0 -.2 0 0 0 0 1'/></filter><rect width=100% height=100% "
                f"filter='url(#n{seed})'/></svg>")


def article(page):
    side = "".join(f"<div>{page.icon() if page.rng.random() < .4 else ''}{page.phrase(1, 2)}</div>"
                   for _ in range(page.rng.randint(4, 10)))
    title = page.phrase(2, 5, True)
    body = "".join(f"<h3>{page.phrase(1, 3)}</h3><p>{page.paragraph()}</p>" for _ in range(5))
    return (f"<div class=bar>{page.icon()}<b>{page.phrase(1, 2)}</b></div><div style='display:flex'>"
            f"<div class=side>{side}</div><div style='padding:12px;flex:1'><h1>{title}</h1>{body}</div></div>")


def dashboard(page):
    cards = "".join(
        f"<div class=card style='width:{page.rng.randint(160, 260)}px'>{page.icon()}<b>{page.phrase(1, 2)}</b>"
        f"<div style='font-size:2em;color:{page.accent}'>{page.rng.randint(10, 99999)}</div>"
        f"<small>{page.phrase(2, 4)}</small></div>" for _ in range(page.rng.randint(5, 14)))
    return (f"<div class=bar><h2>{page.phrase(1, 3, True)}</h2></div>"
            f"<div style='display:flex;flex-wrap:wrap'>{cards}</div>")


def chat(page):
    rows = "".join(
        f"<div style='display:flex;justify-content:{page.rng.choice(['start', 'end'])}'><div class=card "
        f"style='max-width:55%;border-radius:14px;{'background:' + page.accent + ';color:#fff' if page.rng.random() < .4 else ''}'>"
        f"<b>{page.name()}</b><br>{page.paragraph(1, 2)}<small> 1{page.rng.randint(0, 9)}:4{page.rng.randint(0, 9)}</small>"
        f"</div></div>" for _ in range(page.rng.randint(5, 12)))
    people = "".join(f"<div style='padding:8px 4px'><svg width=32 height=32><circle cx=16 cy=16 r=16 fill='{page.accent}'/></svg> "
                     f"<b>{page.name()}</b> {page.phrase(1, 2)}</div>" for _ in range(8))
    return f"<div style='display:flex'><div class=side>{people}</div><div style='flex:1'><h2>{page.phrase(1, 2, True)}</h2>{rows}</div></div>"


def table(page):
    heads = "".join(f"<th>{page.phrase(1, 1, True)}</th>" for _ in range(5))
    rows = "".join("<tr>" + f"<td>{page.phrase(1, 2)}</td><td>{page.name()}</td>"
                   f"<td>{page.rng.randint(1, 10**6):,}</td><td>2026-0{page.rng.randint(1, 9)}-11</td>"
                   f"<td>{page.icon()}{page.phrase(1, 1)}</td></tr>" for _ in range(20))
    return f"<h2>{page.phrase(1, 3, True)}</h2><table border={page.rng.randint(0, 1)} cellpadding=5>{heads}{rows}</table>"


def code(page):
    colours = ["#569cd6", "#ce9178", "#6a9955", page.ink, "#dcdcaa"] if page.dark else \
        ["#0000c0", "#a31515", "#107030", page.ink, "#795e26"]
    lines = []
    for number in range(40):
        a, b, c = page.rng.sample(WORDS, 3)
        form = page.rng.choice(["const {a}{B} = {c}({b});", "if ({a}_{b} > 42) {{", "return {a}.{b}.{c};",
                                "// {a} {b} {c}", "import {{ {a} }} from '{b}/{c}'", "}}",
                                "def {a}_{b}(self, {c}):", "$ {a} --{b} {c}.txt"])
        text = form.format(a=a, b=b, c=c, B=b.capitalize())
        words = "".join(f"<span style='color:{page.rng.choice(colours)}'>{page.text(w)}</span> " for w in text.split())
        lines.append(f"<span style='opacity:.5'>{number:3} </span>" + "&nbsp;" * 4 * page.rng.randint(0, 2) + words)
    name = page.text(f"{page.rng.choice(WORDS)}.{page.rng.choice(['cpp', 'py', 'ts', 'rs'])}", True)
    return f"<div class=bar>{page.icon()}{name}</div><div class=mono>{'<br>'.join(lines)}</div>"


def dialog(page):
    def field():
        return (f"<div style='margin:8px'>{page.icon() if page.rng.random() < .3 else ''}<label>"
                f"<input type={page.rng.choice(['checkbox', 'radio'])}>{page.phrase(1, 4)}</label> "
                f"<button>{page.phrase(1, 1)}</button></div>")
    tabs = "".join(f"<button>{page.phrase(1, 1)}</button>" for _ in range(4))
    return (f"<div style='width:70%;margin:20px auto' class=card><div style='text-align:center'>"
            f"{page.phrase(1, 3, True)}</div><hr>{tabs}{''.join(field() for _ in range(8))}<hr>"
            f"<div style='text-align:right'><button>{page.phrase(1, 1)}</button></div></div>")


def poster(page):
    """Words over a texture."""
    return (f"<div style='position:relative'>{page.photo(1400, 900)}<div style='position:absolute;left:8%;top:20%;"
            f"color:#fff;text-shadow:0 0 6px #000,0 0 3px #000;font-weight:bold;font-size:{page.rng.choice([28, 48, 72, 110])}px'>"
            f"{page.phrase(2, 3, True)}</div><div style='position:absolute;left:8%;bottom:10%;background:#000a;"
            f"color:#eee;padding:10px'>{page.sentence()}</div></div>")


def photos(page):
    cells = "".join(f"<div style='margin:8px'>{page.photo(200, 140)}<br>{page.phrase(1, 3)}</div>" for _ in range(9))
    return f"<h2>{page.phrase(1, 3, True)}</h2><div style='display:flex;flex-wrap:wrap'>{cells}</div>"


def silent(page):
    icons = "".join(page.icon(page.rng.choice([24, 48, 96])) for _ in range(page.rng.randint(0, 8)))
    return page.photo(page.rng.randint(300, 1300), page.rng.randint(200, 800)) + icons


KINDS = [article, dashboard, chat, table, code, dialog, poster, photos, silent]


def document_of(page, kind):
    rng = page.rng
    size = rng.choice([10, 11, 12, 13, 14, 16, 18])
    ground = page.ground
    if rng.random() < 0.2:
        ground = f"linear-gradient({rng.randint(0, 180)}deg,{page.ground},{page.card},{page.ground})"
    body = kind(page)
    return (f"<meta charset=utf-8><style>body{{margin:0;background:{ground};color:{page.ink};font:{size}px "
            f"'{rng.choice(FONTS)}',sans-serif;min-height:100vh}}h1{{font-size:{rng.choice([1.6, 2, 3])}em;color:{page.accent}}}"
            f".bar{{background:{page.card};padding:6px}}.side{{background:{page.card};padding:10px;width:190px;flex:none;"
            f"line-height:{rng.choice([1.4, 2])}}}.card{{background:{page.card};margin:8px;padding:10px;border:1px solid #8886;"
            f"border-radius:{rng.choice([0, 4, 8])}px}}.mono{{font-family:'{rng.choice(MONOSPACED)}';line-height:{rng.choice([1.15, 1.4])};"
            f"padding:6px;white-space:nowrap}}button{{font:inherit;color:inherit;background:{page.card};border:1px solid #8889;"
            f"margin:2px;padding:3px 10px}}</style>{body}")


def take(folder, name, page_html, size, scale, subpixel, profile):
    with tempfile.NamedTemporaryFile("w", suffix=".html", delete=False) as page_file:
        page_file.write(page_html)
    target = folder / f"{name}.png"
    subprocess.run(
        ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync", "--hide-scrollbars",
         f"--user-data-dir={profile}", f"--force-device-scale-factor={scale}", f"--window-size={size[0]},{size[1]}",
         *(["--enable-lcd-text"] if subpixel else []), f"--screenshot={target}", page_file.name],
        check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=120)
    os.unlink(page_file.name)
    return target


def main():
    folder = pathlib.Path(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 45
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    folder.mkdir(parents=True, exist_ok=True)
    truth = []
    with tempfile.TemporaryDirectory() as profile:
        for number in range(count):
            rng = random.Random(seed * 1000 + number)
            page = Page(rng)
            kind = KINDS[number % len(KINDS)]
            page_html = document_of(page, kind)
            scale = rng.choice([1, 1, 1, 1.25, 1.5, 2])
            size = rng.choice([(1280, 800), (1920, 1080), (800, 600), (390, 780), (1440, 900)])
            picture = take(folder, f"p{number:03}", page_html, size, scale, rng.random() < 0.4, profile)
            if rng.random() < 0.2:
                quality = str(rng.choice([60, 75, 90]))
                subprocess.run(["convert", picture, "-quality", quality, picture.with_suffix(".jpg")], check=True)
                picture.unlink()
                picture = picture.with_suffix(".jpg")
            truth.append({"file": picture.name, "app": "Chromium", "kind": kind.__name__,
                          "has_text": kind is not silent, "words": sorted(page.words), "also": [],
                          "headline": page.headline, "scale": scale})
            (folder / "truth.json").write_text(json.dumps(truth, indent=1))


main()
