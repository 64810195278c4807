"""The probe's protocol: every line is answered by one line, and no request ends the program.

Usage: probe_test.py PROBE
"""

import json
import subprocess
import sys
import unittest

PROBE = sys.argv.pop(1)


def ask(*lines: str) -> list[dict]:
    run = subprocess.run([PROBE], input="\n".join(lines) + "\n", capture_output=True, text=True, check=True)
    return [json.loads(line) for line in run.stdout.splitlines()]


def request(op: str, **args) -> str:
    return json.dumps({"op": op, "args": args})


class ProbeTest(unittest.TestCase):
    def test_bad_requests_are_answered_and_the_next_one_is_served(self):
        answers = ask(
            "{",
            "[]",
            '{"op": "nothing.here"}',
            request("clock.stamp", seconds="3"),
            request("clock.stamp"),
            request("due.resolve", phrase="today", **{"from": "yesterday"}),
            request("due.resolve", phrase="today", **{"from": "2026-03-14T09:00:00Z"}, timeZone="Nowhere/Land"),
            request("actions.find", segments=[{"speaker": "you"}]),
            request("clock.stamp", seconds=125),
        )
        self.assertEqual([answer["error"]["type"] for answer in answers[:-1]], ["probe"] * 8)
        self.assertEqual(answers[-1], {"ok": "2:05"})

    def test_a_damaged_note_is_the_functions_error_and_not_the_requests(self):
        answers = ask(request("note.recode", text='{"id":"x"}'), request("note.recode", text=""))
        self.assertEqual([answer["error"]["type"] for answer in answers], ["DecodeError"] * 2)

    def test_time_zone_and_absent_results_follow_the_request(self):
        moment = "2026-03-14T20:00:00Z"
        self.assertEqual(
            ask(
                request("due.resolve", phrase="tomorrow", **{"from": moment}),
                request("due.resolve", phrase="tomorrow", **{"from": moment}, timeZone="Asia/Kolkata"),
                request("due.resolve", phrase="soon", **{"from": moment}),
                request("due.phrase", text="We may 2 of them"),
            ),
            [{"ok": "2026-03-15T00:00:00.000Z"}, {"ok": "2026-03-15T18:30:00.000Z"}, {"ok": None}, {"ok": None}],
        )

    def test_a_place_of_the_pen_is_a_pair_and_steps_are_counted_in_whole_numbers(self):
        place = {"t": 10, "level": 0, "step": 2.5, "startX": 3, "mid": 13, "amplitude": 10}
        answers = ask(request("ink.point", **place, phase=99), request("ink.point", **place, phase=1.5))
        self.assertEqual(answers[0], {"ok": [28, 13]})
        self.assertEqual(answers[1]["error"]["type"], "probe")

    def test_an_editors_run_gives_a_result_for_each_step(self):
        note = {
            "id": "0B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11",
            "title": "Plan",
            "created": "2026-03-14T09:00:00Z",
            "blocks": [{"id": "1B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11", "kind": "paragraph", "text": "- [x] call"}],
        }
        ops = [
            {"op": "shortcut", "id": "#0"},
            {"op": "return", "id": "#0"},
            {"op": "return", "id": "#1"},
            {"op": "delete", "id": "#7"},
            {"op": "plainText"},
            {"op": "wordCount"},
        ]
        [answer] = ask(request("editor.run", note=note, ops=ops, now="2026-03-14T10:00:00Z"))
        blocks = answer["ok"]["note"]["blocks"]
        self.assertEqual([block["kind"] for block in blocks], ["todo", "paragraph"])
        self.assertEqual(answer["ok"]["note"]["modified"], "2026-03-14T10:00:00.000Z")
        fresh = blocks[1]["id"]
        self.assertEqual(answer["ok"]["results"], [True, {"newBlock": fresh}, {"leftList": fresh}, None, "call", 2])

    def test_an_ai_digest_is_made_of_what_the_transport_answers(self):
        settings = {"enabled": False, "provider": "anthropic", "anthropicModel": "claude-haiku-5-5",
                    "compatBaseURL": "", "compatModel": "", "askEachTime": True}
        context = {"callDate": "2026-03-14T20:00:00Z", "yourName": "", "themName": "", "source": "Zoom"}
        call = {"settings": settings, "segments": [], "context": context, "now": "2026-03-14T21:00:00Z"}
        text = json.dumps({"content": [{"type": "text", "text": '{"summary": ["A"]}'}]})
        digest, no_key, refused, made = ask(
            request("ai.digest", **call, key="k", status=200, body=text),
            request("ai.digest", **call, status=200, body=text),
            request("ai.digest", **call, key="k", status=200, body='{"stop_reason": "refusal"}'),
            request("ai.request", **call, key="k", timeZone="Asia/Kolkata"),
        )
        self.assertEqual((digest["ok"]["summary"], digest["ok"]["createdAt"]), (["A"], "2026-03-14T21:00:00.000Z"))
        self.assertEqual(no_key["error"], {"type": "noKey", "message": "Add your API key in Settings › Summaries."})
        self.assertEqual(refused["error"]["type"], "refused")
        self.assertEqual(made["ok"]["headers"]["x-api-key"], "k")
        self.assertEqual(made["ok"]["body"]["messages"][0]["content"], "Call: Zoom, 2026-03-15\n")

    def test_a_digest_carries_the_requests_clock_and_nouns(self):
        segment = {"id": "1B5D6A1E-5B1C-4B57-9C43-7C6F2A7B8E11", "speaker": "them", "start": 0, "end": 4}
        text = "We decided that pricing moves and pricing stays. Can you send the deck by Friday?"
        context = {"callDate": "2026-03-14T09:00:00Z", "yourName": "", "themName": "", "source": "Zoom"}
        [answer] = ask(
            request(
                "digest",
                segments=[segment | {"text": text}],
                context=context,
                nouns=["pricing"],
                now="2026-03-14T10:00:00Z",
            )
        )
        digest = answer["ok"]
        self.assertEqual(digest["title"], "Pricing")
        self.assertEqual(digest["createdAt"], "2026-03-14T10:00:00.000Z")
        self.assertEqual([(one["text"], one["owner"], one["due"]) for one in digest["actions"]],
                         [("Send the deck by Friday", "you", "Friday")])


if __name__ == "__main__":
    unittest.main()
