"""Fits the weights of the page engine's judgement to what page_traits prints, given on standard input.

Of the quadrilaterals in a frame, one of those that are the sheet has to be surer than all others,
and surer than that there is none; on a bare desk, and beside the sheet, none has to be surer. A
conditional logit model says so: the probability of each is its exponential among all, that of none 1.
"""

import sys

import numpy as np
from scipy.optimize import minimize

SAME = 0.965
SAME_AND_SMALL = 0.94  # the corners are whole pixels of the reduced picture, and cards are round
SMALL = ("card", "receipt", "banknote", "several")
NOT_IT = 0.9  # between this and the same, nothing is said
OF_ANOTHER = 0.4
BESIDE = 0.05
LOWERED = 1.8  # the odds asked for, as a logarithm: more sheets are found, and bare desks stay below
STIFFNESS = 0.0002
DETRIMENTAL = ("beyond", "continuing", "leak", "worstLeak", "hole")
EITHER = ("smoothOutside",)


class Choice:
    """One question: the quadrilaterals' traits, which of them are right (none may be), its weight."""

    def __init__(self, traits, right, weight=1.0):
        self.traits, self.right, self.weight = traits, right, weight

    def loss(self, weights):
        logits = self.traits @ weights
        shift = max(0.0, logits.max())
        odds = np.exp(logits - shift)
        total = odds.sum() + np.exp(-shift)
        gradient = self.traits.T @ (odds / total)
        if self.right is None:
            return self.weight * (np.log(total) + shift), self.weight * gradient
        good = odds[self.right]
        gradient = gradient - self.traits[self.right].T @ (good / good.sum())
        return self.weight * -np.log(good.sum() / total), self.weight * gradient


def read(lines):
    names = next(lines).split()[4:]
    frames = {}
    for line in lines:
        words = line.split()
        row = (int(words[1]), int(words[2]), float(words[3]), [float(w) for w in words[4:]] + [1.0])
        frames.setdefault(words[0], []).append(row)
    return names, frames


def choices(frames):
    for name, rows in frames.items():
        sheets = rows[0][0]
        sheet = np.array([row[1] for row in rows])
        overlap = np.array([row[2] for row in rows])
        traits = np.array([row[3] for row in rows])
        if sheets == 0:
            yield Choice(traits, None)
            continue
        same = overlap > (SAME_AND_SMALL if name.startswith(SMALL) else SAME)
        for i in range(sheets):
            right = same & (sheet == i)
            asked = right | (~same & ~((overlap > NOT_IT) & (sheet == i)))
            asked &= ~((overlap > OF_ANOTHER) & (sheet != i))
            if right.any():
                yield Choice(traits[asked], right[asked])
            else:
                print(f"{name}: sheet {i} is not among the candidates", file=sys.stderr)
        beside = overlap < BESIDE
        if sheets == 1 and beside.any():
            yield Choice(traits[beside], None, 0.5)


def fit(names, asked):
    def loss(weights):
        losses, gradients = zip(*(choice.loss(weights) for choice in asked))
        value = sum(losses) / len(asked) + STIFFNESS * (weights[:-1] @ weights[:-1])
        return value, sum(gradients) / len(asked) + 2 * STIFFNESS * np.append(weights[:-1], 0)

    def bounds(name):
        return (-60, 60) if name in EITHER else (-60, 0) if name in DETRIMENTAL else (0, 60)

    result = minimize(loss, np.zeros(len(names) + 1), jac=True, method="L-BFGS-B",
                      bounds=[bounds(name) for name in names] + [(None, None)],
                      options={"maxiter": 3000})
    return result.x


def main():
    names, frames = read(iter(sys.stdin))
    asked = list(choices(frames))
    weights = fit(names, asked)
    wrong = 0
    for choice in asked:
        logits = choice.traits @ weights + LOWERED
        best = logits.argmax()
        expected = logits[best] < 0 if choice.right is None else choice.right[best] and logits[best] > 0
        wrong += not expected
    print(f"constexpr double kOffset = {weights[-1] + LOWERED:.2f};")
    for name, weight in zip(names, weights):
        print(f'    Weight{{"{name}", &Traits::{name}, {weight:.2f}}},')
    print(f"{wrong} of {len(asked)} questions answered wrongly", file=sys.stderr)


main()
