#!/usr/bin/env python3
"""Writes the seed corpora of the fuzz harnesses into fuzz/corpus/<harness>/.

The seeds are the inputs the unit tests use: the logos of the output and model tests
(good ones and the broken ones), the sample receipt's job elements, the printers' status
answers, and the ZPL barcode data of the label tests. Run it again after changing it; the
files are small and kept in the repository.
"""
import os
import shutil
import struct

HERE = os.path.dirname(os.path.abspath(__file__))
CORPUS = os.path.join(HERE, "corpus")


def mono_bmp(rows):
    """A 1-bit BMP from rows of '#' (black) and '.' (white), top row first."""
    width, height = len(rows[0]), len(rows)
    stride = (width + 31) // 32 * 4
    data = bytearray()
    for row in reversed(rows):
        line = bytearray(stride)
        for x, c in enumerate(row):
            if c == ".":
                line[x // 8] |= 0x80 >> (x % 8)
        data += line
    header = b"BM" + struct.pack("<IHHI", 62 + len(data), 0, 0, 62)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 1, 0, len(data), 2835, 2835, 2, 0)
    palette = bytes([0, 0, 0, 0, 255, 255, 255, 0])
    return bytearray(header + info + palette + data)


def put32(data, at, value):
    data[at:at + 4] = struct.pack("<I", value & 0xFFFFFFFF)


def logos():
    square = mono_bmp(["#.#.#.#.", ".#.#.#.#"] * 4)
    wide = mono_bmp(["#" * 100 + "." * 4, "." * 104])
    odd = mono_bmp(["#########", ".........", "#.#.#.#.#"])
    tall = mono_bmp(["#" * 24] * 30)
    zero_size = bytearray(square)
    put32(zero_size, 34, 0)  # image size left for the reader to work out
    colour = bytearray(square)
    colour[28] = 24  # 24 bits a pixel: refused
    top_down = bytearray(square)
    put32(top_down, 22, 0xFFFFFFF8)  # height -8
    truncated = bytearray(square[:70])
    lying_offset = bytearray(square)
    put32(lying_offset, 10, 0x7FFFFFF0)
    return {
        "square": square, "wide": wide, "odd_width": odd, "tall": tall, "zero_image_size": zero_size,
        "24_bit": colour, "top_down": top_down, "truncated": truncated, "lying_offset": lying_offset,
        "not_a_bitmap": bytearray(b"GIF89a not a bitmap"),
    }


JOB_ELEMENTS = [
    '<LOGO FileName="logo.bmp" Rotation="180"/>',
    '<LOGO FileName="logo.png"/>',
    '<LOGO FileName=""/>',
    '<SINGLEFIELD Height="2"><Field>CAFE DU COIN</Field></SINGLEFIELD>',
    '<SINGLEFIELD Justify="RIGHT"><Field>12 place de la Gare</Field></SINGLEFIELD>',
    '<SingleField Justify="LEFT" Char="."><Field>left</Field></SingleField>',
    '<DOUBLEFIELD Char="." Margin="2"><LeftField>2 x Cafe creme</LeftField><RightField>5.00</RightField>'
    '<LeftField>Croissant</LeftField><RightField>1.90</RightField></DOUBLEFIELD>',
    '<DOUBLEFIELD MarginSx="3" MarginDx="1"><LeftField>no right part</LeftField></DOUBLEFIELD>',
    '<DOUBLEFIELDS Width="2" TypeFont="DOUBLEBEAT"><LeftField>TOTAL</LeftField><RightField>12.20</RightField>'
    '</DOUBLEFIELDS>',
    '<LINE Char="="/>',
    '<LINE Char="" Font="FONTB" Width="8" Height="8"/>',
    '<BARCODE Type="CODE128" Height="10" HRI="sopra_sotto">TKT0001234567</BARCODE>',
    '<BARCODE Type="QR_CODE">A{0D}B_C</BARCODE>',
    '<BARCODE Type="EAN13" ModuleWidth="7" BarRatio="2.5" HRI="sotto">4006381333931</BARCODE>',
    '<BARCODE Type="ITF2OF5">12345678</BARCODE>',
    '<MOBILEFIELD Alignment="RIGHT" OffsetX="4" OffsetY="2"><Field>mobile</Field></MOBILEFIELD>',
    '<MOBILEBARCODE Type="CODE39" Justify="CENTER" OffsetY="1" Rotation="90">ABC</MOBILEBARCODE>',
    '<LINEFEED Value="40"/>',
    '<CUT Type="CUT_FULL"/>',
    '<CUT/>',
    '<XONXOFF/>',
    '<Record Slot="9">00L0000000000 LEFT PART</Record>',
    '<Record Slot="9">00R000002000. RIGHT</Record>',
    '<Record Slot="9">00C00000000000CENTRED</Record>',
    '<Record Slot="10">00logo.bmp</Record>',
    '<Record Slot="11">001123456</Record>',
    '<Record Slot="12">000000-=</Record>',
    '<Record Slot="13">003</Record>',
    # Numbers past 32 bits (a barcode height once overflowed a signed multiplication).
    '<BARCODE Type="EAN8" Height="99999999999" ModuleWidth="-2147483648">1234567</BARCODE>',
    '<DOUBLEFIELD Margin="2147483647" MarginSx="-1"><LeftField>L</LeftField><RightField>R</RightField></DOUBLEFIELD>',
]


def jobs():
    seeds = {}
    for i, element in enumerate(JOB_ELEMENTS):
        seeds["element_%02d" % i] = "<Job>%s</Job>" % element
    seeds["ticket"] = "<Job param_CutType=\"val_Partial\">%s</Job>" % "".join(JOB_ELEMENTS[:20])
    seeds["label_config"] = ('<Job param_Resolution="12" param_WidthLabel="60" param_LenghtLabel="5000" '
                             'param_MagFactor="25" param_Peeling="-200" param_Origin_X="2">%s</Job>'
                             % "".join(JOB_ELEMENTS[9:14]))
    seeds["ticket_config"] = ('<Job param_TypePaper="val_Label" param_WidthRow="80 mm" param_Density="260" '
                              'param_Cripted="TRUE" param_CutType="val_Full">%s</Job>' % "".join(JOB_ELEMENTS[:12]))
    return {name: text.encode("utf-8") for name, text in seeds.items()}


def burst(data, more=False, late=False):
    data = bytes(data)
    assert len(data) < 64
    return bytes([len(data) | (0x40 if more else 0) | (0x80 if late else 0)]) + data


HS = [b"\x02030,0,0,0245,000,0,0,0,000,0,0,0\x03\r\n", b"\x02001,0,0,0,1,2,6,0,00000000,1,000\x03\r\n",
      b"\x021234,0\x03\r\n"]


def statuses():
    seeds = {}
    ready_byte = burst(b"\x12")
    six = burst(b"\x10\x0f\x00\x00\x00\x00")
    for model in range(12):
        seeds["model%02d_ready_bytes" % model] = bytes([model, 0]) + ready_byte * 12
        seeds["model%02d_six_bytes" % model] = bytes([model, 0]) + (ready_byte + six) * 6
        seeds["model%02d_paper_out" % model] = bytes([model, 0x03]) + burst(b"\x72") * 12
        seeds["model%02d_hs" % model] = bytes([model, 0]) + (burst(HS[0], True) + burst(HS[1], True) + burst(HS[2]))
        seeds["model%02d_hs_one_burst" % model] = bytes([model, 0]) + burst(HS[0][:30], True) + burst(HS[0][30:] + HS[1][:20], True) + burst(HS[1][20:] + HS[2])
        seeds["model%02d_text" % model] = bytes([model, 0]) + burst(b"!90&0&0&0&0&0\r") * 4
        seeds["model%02d_late" % model] = bytes([model, 0x10]) + burst(b"\x12", late=True) * 12
        seeds["model%02d_identify" % model] = bytes([model, 0]) + burst(b"\xff") + ready_byte * 12
    return seeds


def zpl():
    def header(kind, height=10, module=3, ratio=96, hri=1, chars=12, fill=ord(".")):
        return bytes([kind, height, module, ratio, hri, chars, fill])
    return {
        "qr_escapes": header(14) + b"A{0D}B_C",
        "qr_null_escape": header(14) + b"{00}{zz}{7f}{}",
        "code128": header(1) + b"TKT0001234567",
        "ean13_odd": header(3, height=2, module=11, ratio=112) + b"4006381333931",
        "code128c_text": header(13, hri=0) + b"1234",
        "long_text": header(1, chars=255, fill=0) + b"W" * 600,
        "control_bytes": header(14) + bytes(range(0, 40)) + b"_" * 10,
    }


def bursts(data):
    """The bytes as the emulator harness takes them: a length byte (1 to 64), the bytes."""
    out = bytearray()
    for at in range(0, len(data), 64):
        chunk = data[at:at + 64]
        out += bytes([len(chunk) - 1]) + chunk
    return bytes(out)


def emulator():
    receipt = bytes.fromhex("1B7400 1B40 1D62 100402 100404 1B2100 1B7B00 1B3300 1B2A001000") + \
        bytes([0x80] * 8 + [0x40] * 8) + b"\r\n\x1b2" + b"\x1b{\x00\x1b!\x00" + b" " * 16 + b"CAFE ROMA\r\n" + \
        bytes.fromhex("1D6631 1D4802 1D6850 1D7703 1B6101 1D6B4608") + b"12345678" + bytes.fromhex("1B6100") + \
        b"\r\n\r\n" + bytes.fromhex("1D5601") + b"\n" * 8 + bytes.fromhex("1D5601")
    raster = bytes.fromhex("1B40 1D76303302000200") + bytes([0xFF, 0x00, 0x00, 0xFF]) + bytes.fromhex("1B6D")
    stb = bytes.fromhex("1B7400 1B40 1DFF0A32010059 1DFF0A32090061 1DFF0A320F046B 100402 100411 1B28766400 1B69 1B28769CFF")
    scrambled = bytes(b ^ 0xCB for b in stb)
    vkp = bytes.fromhex("1B7400 1B40 1BC100 1B2101 1D500000 100414 1D4802 1B6101 1D6B05") + b"12345678\x00\r" + \
        bytes.fromhex("1B6100 1B69 1D65030C")
    zpl = (b"^XA^MTD^MMT~TA000^PR2,2,2^LL320^PW480^LH3,0^CFF,26,13^CI27^MFN,F^JUS^XZ^XA^JA^XZ~HS"
           b"^XA^JA^XZ^XA^LH,0^FO0,0^XGE:fault.GRF,1,1^FS^FO160,0^FDCAFE ROMA^FS^FO26,93^BY3,3.0,80"
           b"^B2,,Y,N,N^FD12345678^FS^FO26,200^BQN,2,6^FH^FDMM,B0005A_0DB_5FC^FS^XZ")
    italora = (b"?00\r?01&8&100&D\r?90\r?02&100.000&70.000\r?41&LOGO&10&2&FFC08040\r?40&26.000&1.000&90&LOGO\r"
               b"?10&43.250&2.250&0&1&1&1&0&CAFE ROMA\r?20&1.000&14.375&58.000&0.250\r"
               b"?30&30.000&16.000&C&0&E13&0.250&12.000&2&800123456789\r?03&1\r")
    escp = bytes.fromhex("1B40 1B7401 1B7800 1B4342 1B2100 1B3318 1B2A050400 FF818181 0D0A 1B32 12 1B46 1B2D00 1B35"
                         "1B5700 1B7701 1B3348") + b"CAFE ROMA\r\n" + bytes.fromhex("0F 1B45 1B2D01 1B34") + b"12,50\r\n" + \
        bytes.fromhex("1B2100 1B28420D00060300470000") + b"TKT0001\r" + bytes.fromhex("1B4A79 0C")
    seeds = {}
    for model in range(12):
        for name, data in (("receipt", receipt), ("raster", raster), ("stb", stb), ("scrambled", scrambled),
                           ("vkp", vkp), ("zpl", zpl), ("italora", italora), ("escp", escp)):
            seeds["model%02d_%s" % (model, name)] = bytes([model, 0x01]) + bursts(data)
    seeds["paper_out_zpl"] = bytes([11, 0x89]) + bursts(zpl)
    return seeds


def write(harness, seeds):
    directory = os.path.join(CORPUS, harness)
    shutil.rmtree(directory, ignore_errors=True)
    os.makedirs(directory)
    for name, data in seeds.items():
        with open(os.path.join(directory, name), "wb") as f:
            f.write(data)


def main():
    bmps = logos()
    write("bmp", {"%s_%d" % (name, option): bytes([option]) + data
                  for name, data in bmps.items() for option in (0x00, 0x23, 0x64)})
    write("logo", {"%s_%d" % (name, option): bytes([option]) + data
                   for name, data in bmps.items() for option in (0x00, 0x06)})
    write("job", jobs())
    write("status", statuses())
    write("zpl", zpl())
    write("emulator", emulator())


if __name__ == "__main__":
    main()
